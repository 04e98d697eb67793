// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "TextStyle.h"

#include "Sallowmere/Text/Json.h"

#include <algorithm>

namespace sallowmere {

namespace {

constexpr std::string_view blanks = " \t";

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string lineBreakOf(std::string_view text) {
    const std::size_t at = text.find('\n');
    return at != std::string_view::npos && at > 0 && text[at - 1] == '\r' ? "\r\n" : "\n";
}

/// What the first member is indented by, beyond the object; none unless it begins a line.
std::optional<std::string> indentOf(const JsonTree& tree, const JsonNode& object) {
    const std::size_t first = object.keys.front().begin;
    if (tree.text({object.range.begin, first}).find('\n') == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view outer = indentOfLine(tree.text(), object.range.begin);
    std::string_view inner = indentOfLine(tree.text(), first);
    if (inner.starts_with(outer)) {
        inner.remove_prefix(outer.size());
    }
    return std::string(inner);
}

/// How the piece goes on behind its indentation, by levels of the default style.
std::size_t levelOf(std::string_view line) {
    return std::min(line.find_first_not_of(' '), line.size()) / TextStyle().indent.size();
}

} // namespace

TextStyle styleOf(const JsonTree& tree) {
    TextStyle style;
    style.lineBreak = lineBreakOf(tree.text());
    if (!tree.root() || tree.root()->keys.empty()) {
        return style;
    }
    const JsonNode& root = *tree.root();
    style.isOneLine = tree.text(root.range).find_first_of("\r\n") == std::string_view::npos;
    style.indent = indentOf(tree, root).value_or(style.indent);
    const bool isTight = tree.text()[root.children.front().range.begin - 1] == ':';
    style.gap.assign(isTight ? 0 : 1, ' ');
    return style;
}

std::string_view indentOfLine(std::string_view text, std::size_t at) {
    std::string_view line = text.substr(0, at);
    line.remove_prefix(line.find_last_of('\n') + 1);
    if (line.starts_with(byteOrderMark)) {
        line.remove_prefix(byteOrderMark.size());
    }
    return line.substr(0, line.find_first_not_of(blanks));
}

std::string laidOut(std::string_view piece, const TextStyle& style, std::string_view indent) {
    std::string result;
    const std::size_t last = piece.find_last_of('\n');
    const std::size_t outer = last == std::string_view::npos ? 0 : levelOf(piece.substr(last + 1));
    for (std::size_t begin = 0; begin <= piece.size();) {
        const std::size_t end = std::min(piece.find('\n', begin), piece.size());
        const std::string_view line = piece.substr(begin, end - begin);
        if (begin > 0) {
            result += style.lineBreak;
            result += indent;
            for (std::size_t level = outer; level < levelOf(line); ++level) {
                result += style.indent;
            }
        }
        result += line.substr(std::min(line.find_first_not_of(' '), line.size()));
        begin = end + 1;
    }
    return result;
}

std::string flattened(std::string_view piece, const TextStyle& style) {
    std::string result;
    bool isInString = false;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const char c = piece[i];
        isInString = isInString != (c == '"');
        if (isInString || !isBlank(c)) {
            result += c;
        }
        if (!isInString && (c == ':' || c == ',')) {
            result += style.gap;
        }
    }
    return result;
}

} // namespace sallowmere
