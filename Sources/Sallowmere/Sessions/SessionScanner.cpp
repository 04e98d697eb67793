// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionScanner.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

namespace sallowmere {

namespace {

/// Seconds without a write after which a turn no longer counts as running.
constexpr double workingFor = 90;
/// Seconds without a write after which a session is idle whatever its transcript says.
constexpr double recentFor = 1'800;
constexpr qsizetype titleCharacters = 48;

bool isAskPending(const ParsedTail& tail) {
    return tail.ask && !tail.askAnswered;
}

bool isPlanPending(const ParsedTail& tail) {
    return tail.plan && !tail.planAnswered;
}

SessionStatus statusOf(const ParsedTail& tail, double age) {
    const bool isRecent = age < recentFor;
    if (isRecent && (isAskPending(tail) || isPlanPending(tail))) {
        return SessionStatus::waiting;
    }
    const bool turnEnded =
        tail.lastStopAt && *tail.lastStopAt >= tail.lastActivityEntryAt.value_or(distantPast);
    if (isRecent && turnEnded) {
        return SessionStatus::done;
    }
    if (age < workingFor) {
        return SessionStatus::working;
    }
    return isRecent ? SessionStatus::done : SessionStatus::idle;
}

std::optional<QString> activityOf(const ParsedTail& tail, SessionStatus status) {
    switch (status) {
    case SessionStatus::waiting:
        return tail.ask ? QStringLiteral("Asks: ") + tail.ask->question
                        : QStringLiteral("Plan ready for review");
    case SessionStatus::working:
        return tail.events.empty()
                   ? std::nullopt
                   : std::optional(TranscriptParser::activityLine(tail.events.back()));
    case SessionStatus::done:
        return QStringLiteral("Done — click to jump");
    case SessionStatus::idle:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

QString titleOf(const ParsedTail& tail, const QString& projectName) {
    if (tail.title) {
        return *tail.title;
    }
    return tail.lastPrompt ? firstCharacters(*tail.lastPrompt, titleCharacters).toString()
                           : projectName;
}

void keepFirstOfEachId(std::vector<SessionInfo>& sessions) {
    QSet<QString> ids;
    std::erase_if(sessions, [&ids](const SessionInfo& session) {
        const bool isKnown = ids.contains(session.id);
        ids.insert(session.id);
        return isKnown;
    });
}

std::string_view parentDirectory(std::string_view path) {
    return path.substr(0, path.rfind('/'));
}

} // namespace

std::vector<SessionInfo> SessionScanner::scan(const Settings& settings, Timestamp now) {
    const Timestamp horizon = advancedBy(now, -settings.showIdleHours * 3'600);
    std::vector<Candidate> kept = candidates(settings, horizon);
    std::stable_sort(kept.begin(), kept.end(), [](const Candidate& left, const Candidate& right) {
        return left.modified > right.modified;
    });
    const auto most = static_cast<std::size_t>(settings.maxSessions);
    if (kept.size() > most) {
        kept.erase(kept.begin() + settings.maxSessions, kept.end());
    }

    std::vector<SessionInfo> sessions;
    std::unordered_set<std::string> seen;
    for (const Candidate& candidate : kept) {
        seen.insert(candidate.path);
        if (const ParsedTail* tail = cachedTail(candidate)) {
            sessions.push_back(
                make(candidate.path, *tail, now, candidate.modified, candidate.created));
        }
    }
    std::erase_if(cache_, [&seen](const auto& entry) { return !seen.contains(entry.first); });
    keepFirstOfEachId(sessions);
    return sessions;
}

std::vector<SessionScanner::Candidate> SessionScanner::candidates(const Settings& settings,
                                                                  Timestamp horizon) const {
    std::vector<std::string> projects;
    files_.list(settings.claudeRoot, [&](std::string_view name, EntryType type) {
        if (type == EntryType::directory || type == EntryType::link) {
            projects.push_back(joinPath(settings.claudeRoot, name));
        }
    });
    std::vector<Candidate> found;
    for (const std::string& project : projects) {
        files_.list(project, [&](std::string_view name, EntryType type) {
            if (type == EntryType::directory || !hasExtension(name, "jsonl")
                || name.starts_with("agent-")) {
                return;
            }
            std::string path = joinPath(project, name);
            const std::optional<FileStatus> status = files_.status(path, Links::follow);
            if (status && status->type == EntryType::regular && status->modified >= horizon) {
                found.push_back({std::move(path), status->size, status->modified,
                                 status->created.value_or(status->modified)});
            }
        });
    }
    return found;
}

const ParsedTail* SessionScanner::cachedTail(const Candidate& candidate) {
    const auto cached = cache_.find(candidate.path);
    if (cached != cache_.end() && cached->second.size == candidate.size
        && cached->second.modified == candidate.modified) {
        return &cached->second.tail;
    }
    std::optional<ParsedTail> tail = TranscriptParser::parseTail(files_, candidate.path);
    if (!tail) {
        cache_.erase(candidate.path);
        return nullptr;
    }
    CacheEntry& entry = cache_[candidate.path];
    entry = {candidate.size, candidate.modified, *std::move(tail)};
    return &entry.tail;
}

SessionInfo SessionScanner::make(const std::string& key, const ParsedTail& tail, Timestamp now,
                                 Timestamp modified, Timestamp created) {
    const SessionStatus status = statusOf(tail, secondsBetween(modified, now));
    const bool isWaiting = status == SessionStatus::waiting;
    SessionInfo session;
    session.id = decodeUtf8(key);
    session.sessionId = tail.sessionId.value_or(decodeUtf8(lastPathComponent(key)));
    session.projectName =
        tail.cwd ? lastPathComponent(QStringView(*tail.cwd)).toString() : projectName(key);
    session.cwd = tail.cwd;
    session.title = titleOf(tail, session.projectName);
    session.lastPrompt = tail.lastPrompt;
    session.activity = activityOf(tail, status);
    session.status = status;
    session.modelBadge = modelBadge(tail.model);
    session.startedAt = created;
    session.lastActivityAt = modified;
    session.events = tail.events;
    session.ask = isWaiting && isAskPending(tail) ? tail.ask : std::nullopt;
    session.todo = tail.todo;
    session.plan = isWaiting && isPlanPending(tail) ? tail.plan : std::nullopt;
    return session;
}

QString SessionScanner::projectName(std::string_view fromEncodedDir) {
    const QString directory = decodeUtf8(lastPathComponent(parentDirectory(fromEncodedDir)));
    const QStringList pieces = directory.split(u'-', Qt::SkipEmptyParts);
    return pieces.isEmpty() ? directory : pieces.last();
}

QString SessionScanner::modelBadge(const std::optional<QString>& model) {
    struct Badge {
        QStringView family;
        QString label;
    };
    static const std::array<Badge, 5> badges{{
        {u"fable", QStringLiteral("Fable")},
        {u"mythos", QStringLiteral("Fable")},
        {u"opus", QStringLiteral("Opus")},
        {u"sonnet", QStringLiteral("Sonnet")},
        {u"haiku", QStringLiteral("Haiku")},
    }};
    const QString lowered = model.value_or(QString()).toLower();
    const auto* const badge = std::find_if(
        badges.begin(), badges.end(), [&](const Badge& b) { return lowered.contains(b.family); });
    return badge == badges.end() ? QStringLiteral("Claude") : badge->label;
}

} // namespace sallowmere
