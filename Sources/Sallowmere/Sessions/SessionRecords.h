// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Processes/ClaudeProcess.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace sallowmere {

/// What a session is doing, in order of urgency to its reader.
enum class SessionStatus {
    /// The assistant's turn is running.
    working,
    /// The assistant waits for the user: a question, a plan or a permission prompt.
    waiting,
    /// The last turn finished recently.
    done,
    /// Nothing recent.
    idle,
};

/// The word for a status: "working", "waiting", "done" or "idle".
QString rawValue(SessionStatus status);
/// The status with that word, in exactly that spelling.
std::optional<SessionStatus> sessionStatus(QStringView rawValue);

/// One line of a session's recent activity.
struct LogEvent {
    enum class Kind {
        /// A line of the assistant's prose.
        text,
        /// A tool call.
        tool,
    };

    /// Number of the line within the tail, from 1, a full stop and the block's position, from 0.
    QString id;
    Kind kind = Kind::text;
    /// First line of the prose, or the tool's name with its main argument: Read(notes.txt).
    QString label;
    /// Secondary text; the transcript reader leaves it absent.
    std::optional<QString> detail;
    std::optional<Timestamp> timestamp;

    bool operator==(const LogEvent&) const = default;
};

/// A question put to the user.
struct AskQuestion {
    QString question;
    /// In the order offered; the first is answered with the digit 1.
    QStringList options;

    bool operator==(const AskQuestion&) const = default;
};

/// How far the latest todo list has come.
struct TodoProgress {
    std::int64_t completed = 0;
    std::int64_t total = 0;

    bool operator==(const TodoProgress&) const = default;
};

/// What the end of one transcript tells. Every field may be missing: a tail may hold few lines.
struct ParsedTail {
    std::optional<QString> sessionId;
    std::optional<QString> title;
    std::optional<QString> cwd;
    std::optional<QString> gitBranch;
    /// Model identifier of the last assistant message.
    std::optional<QString> model;
    /// What the user typed last, on one line and cut.
    std::optional<QString> lastPrompt;
    /// The newest ones, oldest first.
    std::vector<LogEvent> events;
    /// The last question, and whether it was answered after it was asked.
    std::optional<AskQuestion> ask;
    bool askAnswered = false;
    /// The last plan presented for review, and whether it was answered.
    std::optional<QString> plan;
    bool planAnswered = false;
    std::optional<TodoProgress> todo;
    /// Time of the last end-of-turn marker.
    std::optional<Timestamp> lastStopAt;
    std::optional<Timestamp> lastActivityEntryAt;

    bool operator==(const ParsedTail&) const = default;
};

/// One session as listed and shown, identified by `id`.
struct SessionInfo {
    /// Stable across scans: the full path of the transcript. Paths that differ only in bytes that
    /// are not UTF-8 share one.
    QString id;
    /// The assistant's own identifier of the session.
    QString sessionId;
    QString projectName;
    std::optional<QString> cwd;
    QString title;
    std::optional<QString> lastPrompt;
    /// One line saying what the session does now.
    std::optional<QString> activity;
    SessionStatus status = SessionStatus::idle;
    /// Short name of the model.
    QString modelBadge;
    /// When the transcript was created.
    Timestamp startedAt{};
    /// When it was last written.
    Timestamp lastActivityAt{};
    std::vector<LogEvent> events;
    /// Present only while it waits for an answer.
    std::optional<AskQuestion> ask;
    std::optional<TodoProgress> todo;
    /// Present only while it waits for a review.
    std::optional<QString> plan;
    /// The running process that was matched to this session.
    std::optional<ClaudeProcess> process;

    bool operator==(const SessionInfo&) const = default;
};

} // namespace sallowmere
