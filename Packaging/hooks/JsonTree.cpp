// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "JsonTree.h"

#include "JsonScanner.h"
#include "Sallowmere/Text/Json.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sallowmere {

namespace {

/// simdjson goes a little deeper.
constexpr int greatestDepth = 1'000;

/// Ends at the first error, which is thrown as a `Complaint`.
class TreeParser {
public:
    explicit TreeParser(std::string_view blanked) : blanked_(blanked) {}

    std::optional<JsonNode> document() {
        skipBlanks();
        if (at_ == blanked_.size()) {
            return std::nullopt;
        }
        JsonNode root = value(0);
        skipBlanks();
        if (at_ < blanked_.size()) {
            fail("there is more behind the end");
        }
        return root;
    }

private:
    [[noreturn]] void fail(std::string reason) const {
        throw Complaint{at_, at_ < blanked_.size() ? std::move(reason) : "the text ends too early"};
    }

    char next() const { return at_ < blanked_.size() ? blanked_[at_] : '\0'; }

    void skipBlanks() {
        at_ = std::min(blanked_.find_first_not_of(" \t\r\n", at_), blanked_.size());
    }

    JsonNode value(int depth) {
        JsonNode node;
        node.range.begin = at_;
        if (next() == '{' || next() == '[') {
            if (depth == greatestDepth) {
                fail("this is nested too deep");
            }
            node.kind = next() == '{' ? JsonNode::Kind::object : JsonNode::Kind::array;
            children(node, depth + 1);
        } else if (next() == '"') {
            node.kind = JsonNode::Kind::string;
            at_ = JsonScanner::endOfString(blanked_, at_);
        } else {
            at_ = JsonScanner::endOfWord(blanked_, at_);
        }
        node.range.end = at_;
        return node;
    }

    void children(JsonNode& node, int depth) {
        const char close = next() == '{' ? '}' : ']';
        ++at_;
        skipBlanks();
        if (next() == close) {
            ++at_;
            return;
        }
        for (;;) {
            child(node, depth);
            skipBlanks();
            if (next() == close) {
                ++at_;
                return;
            }
            if (next() != ',') {
                fail(std::string("a comma or ") + close + " is missing");
            }
            comma(node, close);
        }
    }

    void comma(JsonNode& node, char close) {
        const std::size_t comma = at_++;
        skipBlanks();
        if (next() == close) {
            at_ = comma;
            fail("there is nothing behind this comma");
        }
        node.commas.push_back(comma);
    }

    void child(JsonNode& node, int depth) {
        if (node.kind == JsonNode::Kind::object) {
            key(node);
        }
        node.children.push_back(value(depth));
    }

    void key(JsonNode& node) {
        if (next() != '"') {
            fail("a key in quotes is missing");
        }
        const std::size_t begin = at_;
        at_ = JsonScanner::endOfString(blanked_, at_);
        node.keys.push_back({begin, at_});
        skipBlanks();
        if (next() != ':') {
            fail("a colon is missing");
        }
        ++at_;
        skipBlanks();
    }

    std::string_view blanked_;
    std::size_t at_ = 0;
};

} // namespace

Range JsonNode::item(std::size_t index) const {
    return {keys.empty() ? children[index].range.begin : keys[index].begin,
            children[index].range.end};
}

JsonTree::JsonTree(std::string_view text) : text_(text), blanked_(text) {
    try {
        if (text.starts_with(byteOrderMark)) {
            std::fill_n(blanked_.begin(), byteOrderMark.size(), ' ');
        }
        JsonScanner::requireUtf8(text);
        comments_ = JsonScanner::comments(blanked_);
        for (const Range comment : comments_) {
            std::fill(blanked_.begin() + static_cast<std::ptrdiff_t>(comment.begin),
                      blanked_.begin() + static_cast<std::ptrdiff_t>(comment.end), ' ');
        }
        root_ = TreeParser(blanked_).document();
    } catch (Complaint& complaint) {
        complaint_ = std::move(complaint);
    }
}

std::string_view JsonTree::text(Range range) const {
    return text_.substr(range.begin, range.end - range.begin);
}

std::string JsonTree::string(Range range) const {
    const std::string_view quoted = text(range);
    if (!quoted.starts_with('"')) {
        return {};
    }
    if (quoted.find('\\') == std::string_view::npos) {
        return std::string(quoted.substr(1, quoted.size() - 2));
    }
    JsonReader reader;
    const JsonObject object =
        reader.object("{\"s\":" + std::string(quoted) + "}").value_or(JsonObject());
    return std::string(object.string("s").value_or(""));
}

std::vector<std::size_t> JsonTree::members(const JsonNode& object, std::string_view key) const {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < object.keys.size(); ++i) {
        if (string(object.keys[i]) == key) {
            indices.push_back(i);
        }
    }
    return indices;
}

std::size_t JsonTree::endOfComments(Range range) const {
    const auto behind =
        std::partition_point(comments_.begin(), comments_.end(),
                             [&](const Range& comment) { return comment.end <= range.end; });
    const bool isThere = behind != comments_.begin() && std::prev(behind)->begin >= range.begin;
    return isThere ? std::prev(behind)->end : range.begin;
}

bool JsonTree::endsLineComment(std::size_t at) const {
    const auto comment = std::partition_point(comments_.begin(), comments_.end(),
                                              [&](const Range& each) { return each.end < at; });
    return comment != comments_.end() && comment->end == at && text_[comment->begin + 1] == '/';
}

bool JsonTree::hasCommentOfItsOwn(const JsonNode& node) const {
    std::size_t begin = node.range.begin;
    for (std::size_t i = 0; i < node.children.size(); ++i) {
        const Range item = node.item(i);
        if (endOfComments({begin, item.begin}) != begin) {
            return true;
        }
        begin = item.end;
    }
    return endOfComments({begin, node.range.end}) != begin;
}

TextPosition positionOf(std::string_view text, std::size_t at) {
    TextPosition position;
    const std::size_t begin = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    for (std::size_t i = begin; i < std::min(at, text.size()); ++i) {
        const bool isContinuation = (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
        position.column += isContinuation ? 0U : 1U;
        if (text[i] == '\n') {
            ++position.line;
            position.column = 1;
        }
    }
    return position;
}

} // namespace sallowmere
