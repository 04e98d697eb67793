// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// A stretch of a text: bytes from `begin` up to `end`, which is not in it.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool operator==(const Range&) const = default;
};

/// Why a text is not what it should be.
struct Complaint {
    /// The first byte that is wrong.
    std::size_t at = 0;
    std::string reason;
};

/// A JSON value and where it stands. Texts are kept as they are written; `JsonTree` reads them.
struct JsonNode {
    enum class Kind { object, array, string, other };

    Kind kind = Kind::other;
    Range range;
    /// The keys of an object's members, quotes included; none for another value.
    std::vector<Range> keys;
    /// The elements of an array, or the values of an object's members.
    std::vector<JsonNode> children;
    /// The commas between them, one fewer than there are children.
    std::vector<std::size_t> commas;

    /// Where child `index` begins and ends, its key included.
    Range item(std::size_t index) const;
};

/// A text of JSON as people write it: with `//` and `/* */` comments, and a byte-order mark in
/// front. Otherwise strict: a trailing comma, a leading zero, a raw control character in a string,
/// a lone surrogate or a number beyond a double's range is an error, and so is a depth of more than
/// 1,000. Positions are bytes of that text, which has to outlive the tree.
class JsonTree {
public:
    /// A text that holds nothing but blanks and comments has no root and is no error.
    explicit JsonTree(std::string_view text);

    std::string_view text() const { return text_; }
    std::string_view text(Range range) const;
    /// The same text with a blank for every byte of a comment, and for the mark.
    const std::string& withoutComments() const { return blanked_; }
    /// All comments in order, each without the line break that ends it.
    const std::vector<Range>& comments() const { return comments_; }
    const std::optional<JsonNode>& root() const { return root_; }
    /// Absent when the text is in order.
    const std::optional<Complaint>& complaint() const { return complaint_; }

    /// What a key or a string says. Empty for another value.
    std::string string(Range range) const;
    /// The indices of an object's members of that name; none for another value.
    std::vector<std::size_t> members(const JsonNode& object, std::string_view key) const;
    /// The end of the last comment in the range, which must not begin or end within one; its
    /// beginning when there is none.
    std::size_t endOfComments(Range range) const;
    /// Whether a `//` comment ends there, so that a line break has to follow.
    bool endsLineComment(std::size_t at) const;
    /// Whether there is a comment between the items of an object or array, or around them.
    bool hasCommentOfItsOwn(const JsonNode& node) const;

private:
    std::string_view text_;
    std::string blanked_;
    std::vector<Range> comments_;
    std::optional<JsonNode> root_;
    std::optional<Complaint> complaint_;
};

/// Line and column of a byte, both from 1; columns count characters of UTF-8.
struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
};
TextPosition positionOf(std::string_view text, std::size_t at);

} // namespace sallowmere
