// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "JsonTree.h"

namespace sallowmere {

/// How a text of JSON is laid out, for what is added to it to look like the rest.
struct TextStyle {
    /// LF, or CRLF.
    std::string lineBreak = "\n";
    /// What one level is indented by; may be empty.
    std::string indent = "  ";
    /// What stands behind a colon and behind a comma of what is on one line; may be empty.
    std::string gap = " ";
    /// Whether all of it is on one line.
    bool isOneLine = false;

    bool operator==(const TextStyle&) const = default;
};

/// The style of a text; that of an empty object or of no value at all is the default one, but for
/// the line breaks.
TextStyle styleOf(const JsonTree& tree);

/// The blanks that begin the line on which a byte stands, up to that byte.
std::string_view indentOfLine(std::string_view text, std::size_t at);

/// A piece of JSON in the default style (without comments, and on several lines when long) in
/// another. `indent` is that of its first line, which is not written.
std::string laidOut(std::string_view piece, const TextStyle& style, std::string_view indent);

/// The same on one line.
std::string flattened(std::string_view piece, const TextStyle& style);

} // namespace sallowmere
