// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Application/AppState.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeFileSystem.h"
#include "Support/FakeQueues.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sallowmere {

/// A session whose `id` and `sessionId` differ: "a" and "the a".
inline SessionInfo session(const QString& id, SessionStatus status = SessionStatus::working) {
    SessionInfo session;
    session.id = id;
    session.sessionId = QStringLiteral("the ") + id;
    session.status = status;
    return session;
}

inline SessionInfo asking(SessionInfo session) {
    session.status = SessionStatus::waiting;
    session.ask = AskQuestion{QStringLiteral("Which?"), {QStringLiteral("This")}};
    return session;
}

inline SessionInfo planning(SessionInfo session) {
    session.status = SessionStatus::waiting;
    session.plan = QStringLiteral("First this.");
    return session;
}

/// The session with a process, which may run in a terminal.
inline SessionInfo running(SessionInfo session,
                           const std::optional<std::int32_t>& terminalPid = std::nullopt) {
    ClaudeProcess process;
    process.pid = 900;
    if (terminalPid) {
        process.terminalName = QStringLiteral("kitty");
        process.terminalPid = terminalPid;
    }
    session.process = process;
    return session;
}

inline SessionInfo in(const QString& cwd, SessionInfo session) {
    session.cwd = cwd;
    return session;
}

inline PermissionRequest request(const QString& id, const QString& sessionId = {}) {
    return {id, sessionId, QStringLiteral("May I?"), {}};
}

/// A model over fakes, whose time passes when the test says so.
class AppStateTest : public testing::Test {
protected:
    struct SentPrompt {
        QString prompt;
        SessionInfo session;
        Settings settings;
        PromptRunner::Completion completion;
    };

    AppStateTest() { restart(); }

    /// Begins anew with the present `settings`.
    void restart() { state = std::make_unique<AppState>(settings, services()); }

    void scan(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> permissions = {}) {
        state->applyScan(std::move(sessions), {}, std::move(permissions));
    }

    std::vector<std::string> soundsPlayed() const {
        std::vector<std::string> names;
        for (const FakeSounds::Played& sound : sounds.played) {
            names.push_back(sound.name);
        }
        return names;
    }

    const Timestamp start = at("2026-11-20T12:00:00Z");
    const std::string home = "/home/u";
    Settings settings = Settings::defaults(home);
    FakeMainQueue queue{start};
    FakeFileSystem files;
    FakeApplications applications;
    FakeKeystrokes keystrokes;
    FakeSounds sounds;
    /// Tells the time to what decides whether a sound is repeated.
    Clock soundClock = queue.clock();
    SoundPlayer player{sounds, [this] { return soundClock(); }};
    std::vector<std::string> openedFolders;
    std::vector<SentPrompt> sent;
    std::unique_ptr<AppState> state;

private:
    AppServices services() {
        return {queue.clock(),
                queue,
                files,
                home,
                applications,
                keystrokes,
                [this](const std::string& folder) { openedFolders.push_back(folder); },
                player,
                [this](const QString& prompt, const SessionInfo& session, const Settings& used,
                       PromptRunner::Completion completion) {
                    sent.push_back({prompt, session, used, std::move(completion)});
                }};
    }
};

} // namespace sallowmere
