// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sallowmere::fuzz {

/// What stands between line feeds, empty pieces left out.
std::vector<std::string_view> nonEmptyLines(std::string_view text);

/// The text with every byte that is not valid UTF-8 replaced.
std::string withBytesReplaced(std::string_view text);

} // namespace sallowmere::fuzz
