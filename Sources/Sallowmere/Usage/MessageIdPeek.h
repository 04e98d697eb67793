// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace sallowmere {

/// The id of the message in a transcript line, read off the line's beginning without parsing it.
///
/// If the line is valid JSON and this gives an id, it is the id that parsing would find. It may
/// give none where parsing finds one, and one where the line does not parse: good for passing over
/// the many lines that repeat a message, no good for anything else. It costs the few hundred bytes
/// before the id, where parsing costs the whole line.
std::optional<std::string_view> peekMessageId(std::string_view line);

} // namespace sallowmere
