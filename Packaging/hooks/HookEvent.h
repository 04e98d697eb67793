// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <string_view>

namespace sallowmere {

/// What a call of the assistant's hooks means for the requests of one session.
struct HookEvent {
    enum class Kind {
        /// The assistant has just asked for a permission.
        permission,
        /// It has just asked something that its transcript tells: a question, or approval of a
        /// plan.
        question,
        /// It has been asking for some seconds, for a permission or something else.
        reminder,
        /// It goes on, or has ended: whatever it asked for is settled.
        settled,
    };

    Kind kind = Kind::settled;
    /// As the assistant says it, which may be anything but empty; at most `longestSessionId` bytes
    /// of UTF-8 unless these are not valid.
    QString sessionId;
    /// What to show, on one line; may be empty. For `permission` the tool and the heart of its
    /// input.
    QString message;

    bool operator==(const HookEvent&) const = default;
};

/// User-perceived characters of a message; a longer one is cut and ends in an ellipsis.
inline constexpr qsizetype longestMessage = 120;

/// Bytes. The ids of real sessions have 36; with this bound every notification stays well below
/// what is read.
inline constexpr std::size_t longestSessionId = 65'536;

/// The event in what the assistant gives its hooks; absent for any event, and anything at all, that
/// changes nothing. `JsonReader::padding` bytes behind the text must be readable. Any thread.
std::optional<HookEvent> readHookEvent(std::string_view paddedJson);

/// The text on one line and not too long: line breaks, other control characters and those that
/// reorder their neighbours become blanks.
QString shownMessage(QStringView text);

} // namespace sallowmere
