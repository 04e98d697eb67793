// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/Samples.h"

#include "Support/Times.h"

namespace sallowmere::Samples {

using namespace std::chrono_literals;

namespace {

UsageWindow window(double used, double limit, double resetsIn) {
    return {used, limit, resetsIn, std::nullopt};
}

} // namespace

Timestamp now() {
    return at("2026-11-20T12:00:00Z");
}

UsageSnapshot usage() {
    UsageSnapshot snapshot;
    snapshot.fiveHour = window(31e6, 50e6, 8'040);
    snapshot.weekly = window(140e6, 350e6, 291'900);
    snapshot.weeklyFable = window(151e6, 180e6, 291'900);
    return snapshot;
}

SessionInfo session(const QString& id, const QString& title, SessionStatus status,
                    std::chrono::seconds age) {
    SessionInfo info;
    info.id = id;
    info.sessionId = id;
    info.title = title;
    info.projectName = QStringLiteral("accounts");
    info.cwd = QStringLiteral("/home/u/accounts");
    info.status = status;
    info.modelBadge = QStringLiteral("Opus");
    info.lastActivityAt = now() - age;
    return info;
}

ClaudeProcess process(std::int32_t pid, double cpu) {
    ClaudeProcess running;
    running.pid = pid;
    running.cpuPercent = cpu;
    running.elapsed = QStringLiteral("3h12m");
    running.terminalName = QStringLiteral("kitty");
    running.terminalPid = 7;
    return running;
}

SessionInfo asking() {
    SessionInfo info =
        session(QStringLiteral("ask"), QStringLiteral("Pick a database for the account service"),
                SessionStatus::waiting, 40s);
    info.lastPrompt = QStringLiteral("choose something we can run without an administrator");
    info.activity = QStringLiteral("Asks: Which database should the new service use?");
    info.todo = TodoProgress{2, 5};
    info.ask =
        AskQuestion{QStringLiteral("Which database should the new service use?"),
                    {QStringLiteral("PostgreSQL"), QStringLiteral("SQLite, one file per user"),
                     QStringLiteral("Keep the JSON files")}};
    info.process = process(5120, 3.4);
    return info;
}

SessionInfo planning() {
    SessionInfo info = session(QStringLiteral("plan"), QStringLiteral("Move the cache to disk"),
                               SessionStatus::waiting, 90s);
    info.activity = QStringLiteral("Plan ready for review");
    info.plan = QStringLiteral("## Move the cache to disk\n\n"
                               "- Write `CacheStore` with an **atomic** rename\n"
                               "- Replace the map in `Session`, keep its *interface*\n"
                               "- Measure start-up before and after\n\n"
                               "| step | days |\n| --- | --- |\n| write | 1 |\n| measure | 2 |\n\n"
                               "See [the notes](https://example.org/notes) and "
                               "![a picture](https://example.org/picture.png).\n");
    return info;
}

SessionInfo working() {
    SessionInfo info = session(QStringLiteral("work"), QStringLiteral("Fix the login form"),
                               SessionStatus::working, 1s);
    info.projectName = QStringLiteral("webapp");
    info.modelBadge = QStringLiteral("Sonnet");
    info.lastPrompt = QStringLiteral("make the submit button disabled while the request runs");
    info.activity = QStringLiteral("Writing LoginForm.tsx");
    info.process = process(5121, 37);
    return info;
}

SessionInfo idle() {
    SessionInfo info = session(QStringLiteral("idle"),
                               QStringLiteral("Read the release notes and say what concerns us"),
                               SessionStatus::idle, 1h);
    info.modelBadge = QStringLiteral("Haiku");
    return info;
}

SessionInfo detailed(bool isRunning) {
    SessionInfo info = working();
    if (!isRunning) {
        info.process.reset();
        info.status = SessionStatus::done;
    }
    const auto event = [](const char* id, LogEvent::Kind kind, const char* label) {
        return LogEvent{QString::fromUtf8(id), kind, QString::fromUtf8(label), {}, {}};
    };
    info.events = {
        event("1.0", LogEvent::Kind::tool, "Read(LoginForm.tsx)"),
        event("2.0", LogEvent::Kind::text,
              "The button ignores the pending state. I will pass it down."),
        event("3.0", LogEvent::Kind::tool, "Edit(LoginForm.tsx)"),
        event("4.0", LogEvent::Kind::tool, "Bash(npm test -- LoginForm)"),
    };
    return info;
}

ClaudeProcess orphan(const char* cwd) {
    ClaudeProcess running = process(4242, 0);
    running.cwd = QString::fromUtf8(cwd);
    return running;
}

PermissionRequest request() {
    return {QStringLiteral("request.json"), QStringLiteral("work"),
            QStringLiteral("Bash: npm test -- LoginForm --watch=false"), now()};
}

SessionInfo titled(const char* id, const char* title, std::chrono::seconds age) {
    return session(QString::fromUtf8(id), QString::fromUtf8(title), SessionStatus::done, age);
}

} // namespace sallowmere::Samples
