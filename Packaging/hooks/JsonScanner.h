// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "JsonTree.h"

namespace sallowmere {

/// Finds where the smallest parts of JSON end. What is wrong is thrown as a `Complaint`.
namespace JsonScanner {

/// Throws unless the text is valid UTF-8.
void requireUtf8(std::string_view text);

/// The comments of a text: outside of strings, from `//` up to a line break or the text's end, and
/// from `/*` to `*/`. Throws when the last one is not closed.
std::vector<Range> comments(std::string_view text);

/// The position behind the string that begins at `at`.
std::size_t endOfString(std::string_view text, std::size_t at);

/// The position behind the number, or `true`, `false` or `null`, that begins at `at`.
std::size_t endOfWord(std::string_view text, std::size_t at);

} // namespace JsonScanner

} // namespace sallowmere
