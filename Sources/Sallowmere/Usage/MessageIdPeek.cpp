// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/MessageIdPeek.h"

namespace sallowmere {

namespace {

/// Walks over the members of an object, written without blanks, that come before a wanted one.
/// Whatever is not plain ends the walk.
class MemberWalk {
public:
    explicit MemberWalk(std::string_view text) : rest_(text) {}

    /// Steps into an object and on to the value of the member with that key.
    bool enter(std::string_view wanted) {
        if (!take('{')) {
            return false;
        }
        for (;;) {
            const std::optional<std::string_view> key = plainString();
            if (!key || !take(':')) {
                return false;
            }
            if (*key == wanted) {
                return true;
            }
            if (!skipScalar() || !take(',')) {
                return false;
            }
        }
    }

    /// A string that is written as it reads, with no escape in it.
    std::optional<std::string_view> plainString() {
        if (!take('"')) {
            return std::nullopt;
        }
        const std::size_t end = rest_.find('"');
        const std::string_view content = rest_.substr(0, end);
        if (end == std::string_view::npos || content.find('\\') != std::string_view::npos) {
            return std::nullopt;
        }
        rest_.remove_prefix(end + 1);
        return content;
    }

private:
    bool take(char c) {
        const bool found = rest_.starts_with(c);
        rest_.remove_prefix(found ? 1 : 0);
        return found;
    }

    bool skipScalar() {
        if (rest_.starts_with('"')) {
            return plainString().has_value();
        }
        const std::size_t end = rest_.find(',');
        const std::string_view value = rest_.substr(0, end);
        if (end == std::string_view::npos
            || value.find_first_of("{}[]\"") != std::string_view::npos) {
            return false;
        }
        rest_.remove_prefix(end);
        return true;
    }

    std::string_view rest_;
};

} // namespace

std::optional<std::string_view> peekMessageId(std::string_view line) {
    MemberWalk walk(line);
    return walk.enter("message") && walk.enter("id") ? walk.plainString() : std::nullopt;
}

} // namespace sallowmere
