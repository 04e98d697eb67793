// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "JsonTree.h"
#include "TextStyle.h"

#include <span>

namespace sallowmere {

/// Changes of a text of JSON that leave every other byte as it is. Changes may touch but not
/// overlap.
class TextEdits {
public:
    /// The tree has to outlive the edits.
    explicit TextEdits(const JsonTree& tree) : tree_(tree) {}

    /// Appends items, in the default style, to an object or array: behind its last comment, on
    /// lines of their own unless what is there stands on one line.
    void append(const JsonNode& node, std::span<const std::string_view> items,
                const TextStyle& style);

    /// Takes items out of an object or array, by their indices, with what separates them from
    /// their neighbours. Comments between items stay.
    void remove(const JsonNode& node, std::span<const std::size_t> items);

    void replace(Range range, std::string text);

    /// The changed text.
    std::string result() const;

private:
    struct Edit {
        Range range;
        std::string text;
    };

    std::size_t beginOfRemoval(const JsonNode& node, std::size_t index, std::size_t last) const;
    static std::size_t endOfRemoval(const JsonNode& node, std::size_t index, bool isAtEnd);
    void removeDistantComma(const JsonNode& node, std::size_t index, bool isAtEnd);

    const JsonTree& tree_;
    std::vector<Edit> edits_;
};

} // namespace sallowmere
