// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

namespace sallowmere {

/// The pieces of a text between separators, in order, without the empty ones. They are views into
/// the text.
std::vector<std::string_view> splitPieces(std::string_view text, char separator);

} // namespace sallowmere
