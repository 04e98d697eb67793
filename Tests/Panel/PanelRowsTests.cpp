// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelRows.h"

#include <gtest/gtest.h>

#include <utility>

namespace sallowmere {
namespace {

SessionRow rowOf(const SessionInfo& session) {
    return SessionRow::of(session, false, {});
}

TEST(SessionRow, ShowsWhatTheSessionSays) {
    SessionInfo session;
    session.id = QStringLiteral("/a/b.jsonl");
    session.title = QStringLiteral("Fix the login form");
    session.projectName = QStringLiteral("webapp");
    session.modelBadge = QStringLiteral("Opus");
    session.status = SessionStatus::waiting;
    session.lastPrompt = QStringLiteral("make it so");
    session.activity = QStringLiteral("Editing a.cpp");
    const SessionRow row = SessionRow::of(session, true, QStringLiteral("failed"));
    EXPECT_EQ(row.id, "/a/b.jsonl");
    EXPECT_EQ(row.title, "Fix the login form");
    EXPECT_EQ(row.project, "webapp");
    EXPECT_EQ(row.badge, "Opus");
    EXPECT_EQ(row.status, "waiting");
    EXPECT_EQ(row.lastPrompt, "You: make it so");
    EXPECT_EQ(row.activity, "Editing a.cpp");
    EXPECT_TRUE(row.isPrompting);
    EXPECT_EQ(row.promptError, "failed");
}

TEST(SessionRow, LeavesOutWhatIsAbsent) {
    const SessionRow row = rowOf({});
    EXPECT_EQ(row.lastPrompt, "");
    EXPECT_EQ(row.activity, "");
    EXPECT_FALSE(row.hasTodo);
    EXPECT_FALSE(row.hasProcess);
    EXPECT_EQ(row.cpu, "");
    EXPECT_EQ(row.processHelp, "");
}

TEST(SessionRow, ShowsHowFarTheTodosHaveCome) {
    SessionInfo session;
    session.todo = TodoProgress{2, 5};
    EXPECT_TRUE(rowOf(session).hasTodo);
    EXPECT_EQ(rowOf(session).todoCounts, "2/5");
    EXPECT_DOUBLE_EQ(rowOf(session).todoShare, 0.4);
    session.todo = TodoProgress{7, 5};
    EXPECT_EQ(rowOf(session).todoShare, 1);
    session.todo = TodoProgress{0, 0};
    EXPECT_EQ(rowOf(session).todoShare, 0);
    EXPECT_EQ(rowOf(session).todoCounts, "0/0");
}

TEST(SessionRow, ShowsItsProcess) {
    SessionInfo session;
    session.process.emplace();
    session.process->pid = 5120;
    for (const auto& [share, text] : {std::pair(37.4, "37%"), std::pair(0.5, "0%"),
                                      std::pair(1.5, "2%"), std::pair(1'234.0, "1234%")}) {
        session.process->cpuPercent = share;
        EXPECT_EQ(rowOf(session).cpu, text);
    }
    EXPECT_TRUE(rowOf(session).hasProcess);
    EXPECT_EQ(rowOf(session).processHelp, "claude running · pid 5120");
}

TEST(SessionRow, NamesTheTerminalItKnows) {
    SessionInfo session;
    EXPECT_EQ(rowOf(session).terminal, "Terminal");
    session.process.emplace();
    EXPECT_EQ(rowOf(session).terminal, "Terminal");
    session.process->terminalName = QStringLiteral("iTerm");
    EXPECT_EQ(rowOf(session).terminal, "iTerm");
}

TEST(LogRow, TellsProseFromToolCalls) {
    EXPECT_EQ(LogRow::of({{}, LogEvent::Kind::text, QStringLiteral("Hello"), {}, {}}),
              (LogRow{QStringLiteral("Hello"), true}));
    EXPECT_EQ(LogRow::of({{}, LogEvent::Kind::tool, QStringLiteral("Bash(ls)"), {}, {}}),
              (LogRow{QStringLiteral("Bash(ls)"), false}));
}

TEST(ProcessRow, IsNamedAfterItsDirectory) {
    ClaudeProcess process;
    process.pid = 4242;
    process.cpuPercent = 12.6;
    process.elapsed = QStringLiteral("3h12m");
    EXPECT_EQ(ProcessRow::of(process),
              (ProcessRow{QStringLiteral("claude"), QStringLiteral("pid 4242"),
                          QStringLiteral("13%"), QStringLiteral("3h12m")}));
    process.cwd = QStringLiteral("/home/u/scratch");
    EXPECT_EQ(ProcessRow::of(process).name, "scratch");
}

TEST(UsageWindowRow, ShowsShareColourAndReset) {
    UsageWindow window;
    window.weightedTokens = 43;
    window.limit = 100;
    EXPECT_EQ(UsageWindowRow::of(QStringLiteral("5h"), window, false),
              (UsageWindowRow{QStringLiteral("5h"), QStringLiteral("43%"), QStringLiteral("green"),
                              QString()}));
    window.resetsIn = 8'040;
    window.officialFraction = 0.6;
    EXPECT_EQ(UsageWindowRow::of(QStringLiteral("7d"), window, false),
              (UsageWindowRow{QStringLiteral("7d"), QStringLiteral("60%"), QStringLiteral("orange"),
                              QStringLiteral("2h14m")}));
    EXPECT_EQ(UsageWindowRow::of(QStringLiteral("7d"), window, true).color, "tint");
    window.officialFraction = 0.9;
    EXPECT_EQ(UsageWindowRow::of(QStringLiteral("7d"), window, true).color, "red");
}

TEST(UsageRow, HasTheFamilyOnlyWhereThereIsOne) {
    UsageSnapshot usage;
    EXPECT_FALSE(UsageRow::of(usage).hasFamily);
    EXPECT_EQ(UsageRow::of(usage).fiveHour.label, "5h");
    EXPECT_EQ(UsageRow::of(usage).weekly.label, "7d");
    usage.weeklyFable.emplace();
    usage.scopedLabel = QStringLiteral("Opus");
    EXPECT_TRUE(UsageRow::of(usage).hasFamily);
    EXPECT_EQ(UsageRow::of(usage).family.label, "Opus");
    EXPECT_EQ(UsageRow::of(usage).family.color, "tint");
    EXPECT_TRUE(UsageRow::of(usage).footer.startsWith(u"5h 0 / 1  ·  7d 0 / 1"));
}

TEST(BarRow, SumsUpAllSessions) {
    SessionInfo working;
    working.status = SessionStatus::working;
    EXPECT_FALSE(BarRow::of({}, {}, 0).hasBeacon);
    EXPECT_FALSE(BarRow::of({}, {}, 0).isWorking);
    const BarRow busy = BarRow::of({working, working}, {}, 0);
    EXPECT_TRUE(busy.isWorking && busy.hasBeacon && busy.isBreathing);
    EXPECT_EQ(busy.beaconColor, "blue");
    EXPECT_EQ(busy.beaconHelp, "2 session(s) working");
    const BarRow asked = BarRow::of({working}, {PermissionRequest()}, 1);
    EXPECT_EQ(asked.beaconColor, "cyan");
    EXPECT_FALSE(asked.isBreathing);
    EXPECT_EQ(BarRow::of({}, {}, 2).beaconColor, "green");
}

} // namespace
} // namespace sallowmere
