// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "TextEdits.h"

#include <algorithm>
#include <utility>

namespace sallowmere {

namespace {

/// Where an item is appended, and how.
struct Place {
    /// What the items so far end with.
    std::size_t last = 0;
    std::size_t at = 0;
    bool isOneLine = false;
    std::string indent;
    std::string closing;
};

bool isOneLine(const JsonTree& tree, Range range) {
    return tree.text(range).find_first_of("\r\n") == std::string_view::npos;
}

Place placeInEmpty(const JsonTree& tree, const JsonNode& node, const TextStyle& style) {
    const std::string_view indent = indentOfLine(tree.text(), node.range.begin);
    const std::size_t close = node.range.end - 1;
    Place place;
    place.last = node.range.begin + 1;
    place.at = tree.endOfComments({place.last, close});
    place.isOneLine = style.isOneLine;
    place.indent = std::string(indent) + style.indent;
    if (place.at == place.last && isOneLine(tree, {place.at, close})) {
        place.at = close;
        place.closing = style.lineBreak + std::string(indent);
    }
    return place;
}

Place placeBehindItems(const JsonTree& tree, const JsonNode& node, const TextStyle& style) {
    const std::size_t first = node.item(0).begin;
    const Range rest{node.children.back().range.end, node.range.end};
    Place place;
    place.last = rest.begin;
    place.at = tree.endOfComments(rest);
    // Behind a comment that takes the rest of its line, a new one begins.
    place.isOneLine = isOneLine(tree, {node.range.begin, first})
                      && (place.at == place.last || isOneLine(tree, rest));
    place.indent = place.isOneLine
                       ? std::string()
                       : std::string(indentOfLine(tree.text(), first))
                             + (isOneLine(tree, {node.range.begin, first}) ? style.indent : "");
    return place;
}

bool endsLine(std::string_view text, std::size_t at) {
    const std::size_t next = text.find_first_not_of(" \t", at);
    return next != std::string_view::npos && (text[next] == '\n' || text[next] == '\r');
}

std::size_t behindLineBreak(std::string_view text, std::size_t at) {
    return at + (text.substr(at, 2) == "\r\n" ? 2U : 1U);
}

} // namespace

void TextEdits::append(const JsonNode& node, std::span<const std::string_view> items,
                       const TextStyle& style) {
    const bool isEmpty = node.children.empty();
    const Place place =
        isEmpty ? placeInEmpty(tree_, node, style) : placeBehindItems(tree_, node, style);
    std::string added;
    for (const std::string_view item : items) {
        const bool isFirst = isEmpty && added.empty();
        added += added.empty() ? "" : ",";
        if (place.isOneLine) {
            added += (isFirst ? "" : style.gap) + flattened(item, style);
        } else {
            added += style.lineBreak + place.indent + laidOut(item, style, place.indent);
        }
    }
    if (!isEmpty) {
        replace({place.last, place.last}, ",");
    }
    replace({place.at, place.at}, added + (place.isOneLine ? "" : place.closing));
}

void TextEdits::remove(const JsonNode& node, std::span<const std::size_t> items) {
    std::vector<bool> isRemoved(node.children.size() + 1, false);
    for (const std::size_t index : items) {
        isRemoved[index] = true;
    }
    for (const std::size_t index : items) {
        std::size_t last = index;
        while (isRemoved[last + 1]) {
            ++last;
        }
        const bool isAtEnd = last + 1 == node.children.size();
        replace({beginOfRemoval(node, index, last), endOfRemoval(node, index, isAtEnd)}, {});
        removeDistantComma(node, index, isAtEnd);
    }
}

/// What follows must not become part of a comment in front of the item. `last` is the last one of
/// those that go with it.
std::size_t TextEdits::beginOfRemoval(const JsonNode& node, std::size_t index,
                                      std::size_t last) const {
    const std::string_view text = tree_.text();
    const std::size_t before = index == 0 ? node.range.begin + 1 : node.commas[index - 1] + 1;
    const std::size_t begin = tree_.endOfComments({before, node.item(index).begin});
    const std::size_t end = node.item(index).end;
    const bool isFollowedByLineBreak =
        tree_.endOfComments({end, node.item(last).begin}) == end
        && endsLine(text, endOfRemoval(node, last, last + 1 == node.children.size()));
    return tree_.endsLineComment(begin) && !isFollowedByLineBreak ? behindLineBreak(text, begin)
                                                                  : begin;
}

/// The comma behind the item goes with it, unless nothing that stays follows.
std::size_t TextEdits::endOfRemoval(const JsonNode& node, std::size_t index, bool isAtEnd) {
    const std::size_t end = node.item(index).end;
    return !isAtEnd && node.commas[index] == end ? end + 1 : end;
}

/// That comma if it does not touch the item, or the one in front when nothing that stays follows.
void TextEdits::removeDistantComma(const JsonNode& node, std::size_t index, bool isAtEnd) {
    if (isAtEnd && index > 0) {
        replace({node.commas[index - 1], node.commas[index - 1] + 1}, {});
    } else if (!isAtEnd && node.commas[index] != node.item(index).end) {
        replace({node.commas[index], node.commas[index] + 1}, {});
    }
}

void TextEdits::replace(Range range, std::string text) {
    edits_.push_back({range, std::move(text)});
}

std::string TextEdits::result() const {
    std::vector<Edit> edits = edits_;
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& left, const Edit& right) {
        return left.range.begin < right.range.begin;
    });
    std::string result;
    std::size_t at = 0;
    for (const Edit& edit : edits) {
        result += tree_.text({at, edit.range.begin});
        result += edit.text;
        at = edit.range.end;
    }
    return result += tree_.text().substr(at);
}

} // namespace sallowmere
