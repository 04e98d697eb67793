// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Application/TerminalFilter.h"

#include "Support/Texts.h"
#include "Support/Times.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

const Timestamp now = at("2026-11-20T12:00:00Z");

ClaudeProcess processIn(const std::optional<QString>& terminal) {
    ClaudeProcess process;
    process.pid = 5;
    process.terminalName = terminal;
    return process;
}

/// A session last active so many seconds ago.
SessionInfo session(const std::optional<ClaudeProcess>& process, double age) {
    SessionInfo session;
    session.process = process;
    session.lastActivityAt = advancedBy(now, -age);
    return session;
}

bool keeps(const SessionInfo& candidate, const QStringList& terminals) {
    std::vector<SessionInfo> sessions{candidate};
    TerminalFilter::keepWanted(sessions, terminals, now);
    return !sessions.empty();
}

bool keeps(const ClaudeProcess& candidate, const QStringList& terminals) {
    std::vector<ClaudeProcess> orphans{candidate};
    TerminalFilter::keepWanted(orphans, terminals);
    return !orphans.empty();
}

/// Whether what runs in a terminal of that name is kept; a session and an orphan fare alike.
bool keepsThoseIn(const QString& terminal, const QStringList& terminals) {
    const bool kept = keeps(processIn(terminal), terminals);
    EXPECT_EQ(keeps(session(processIn(terminal), 0), terminals), kept) << utf8(terminal);
    EXPECT_EQ(keeps(session(processIn(terminal), 1e6), terminals), kept) << utf8(terminal);
    EXPECT_EQ(TerminalFilter::passes(terminal, terminals), kept) << utf8(terminal);
    return kept;
}

TEST(TerminalFilter, KeepsEverythingWhenNoTerminalIsNamed) {
    EXPECT_TRUE(keeps(session(std::nullopt, 1e6), {}));
    EXPECT_TRUE(keeps(session(processIn(std::nullopt), 1e6), {}));
    EXPECT_TRUE(keeps(session(processIn("kitty"), 1e6), {}));
    EXPECT_TRUE(keeps(processIn(std::nullopt), {}));
    EXPECT_TRUE(keeps(processIn("kitty"), {}));
}

TEST(TerminalFilter, KeepsWhatRunsInANamedTerminal) {
    EXPECT_TRUE(keepsThoseIn("kitty", {"kitty"}));
    EXPECT_TRUE(keepsThoseIn("kitty", {"ghostty", "kitty"}));
    EXPECT_FALSE(keepsThoseIn("kitty", {"ghostty"}));
}

TEST(TerminalFilter, IgnoresTheCaseOfTheTerminalsName) {
    EXPECT_TRUE(keepsThoseIn("iTerm", {"iterm"}));
    EXPECT_TRUE(keepsThoseIn("GHOSTTY", {"ghostty"}));
    EXPECT_TRUE(keepsThoseIn(QStringLiteral("ÄRA"), {QStringLiteral("ära")}));
}

TEST(TerminalFilter, NeverMatchesAnEntryWithACapitalLetter) {
    EXPECT_FALSE(keepsThoseIn("iTerm", {"iTerm"}));
    EXPECT_FALSE(keepsThoseIn("GHOSTTY", {"GHOSTTY"}));
    EXPECT_TRUE(keepsThoseIn("iTerm", {"iTerm", "term"}));
}

TEST(TerminalFilter, IsContentWithAPartOfTheName) {
    EXPECT_TRUE(keepsThoseIn("WezTerm", {"term"}));
    EXPECT_TRUE(keepsThoseIn("VS Code", {"s c"}));
    EXPECT_TRUE(keepsThoseIn("kitty", {""}));
    EXPECT_FALSE(keepsThoseIn("term", {"wezterm"}));
    EXPECT_FALSE(keepsThoseIn("kitty", {"k.*y"}));
    EXPECT_FALSE(keepsThoseIn("", {"kitty"}));
}

TEST(TerminalFilter, KeepsWhatThisProgramStartedWhateverIsNamed) {
    EXPECT_TRUE(keepsThoseIn("Askrow", {"kitty"}));
    EXPECT_TRUE(keepsThoseIn("askrow", {"kitty"}));
    EXPECT_TRUE(keepsThoseIn("ASKROW", {"kitty"}));
    EXPECT_FALSE(keepsThoseIn("Askrows", {"kitty"}));
    EXPECT_FALSE(keepsThoseIn("my askrow", {"kitty"}));
}

TEST(TerminalFilter, KeepsASessionWithoutATerminalForHalfAnHour) {
    for (const std::optional<ClaudeProcess>& process :
         {std::optional<ClaudeProcess>(), std::optional(processIn(std::nullopt))}) {
        EXPECT_TRUE(keeps(session(process, 0), {"kitty"}));
        EXPECT_TRUE(keeps(session(process, 1'799), {"kitty"}));
        EXPECT_TRUE(keeps(session(process, 1'799.999999), {"kitty"}));
        EXPECT_FALSE(keeps(session(process, 1'800), {"kitty"}));
        EXPECT_FALSE(keeps(session(process, 1e6), {"kitty"}));
    }
}

TEST(TerminalFilter, KeepsASessionThatSeemsToBeActiveInTheFuture) {
    EXPECT_TRUE(keeps(session(std::nullopt, -3'600), {"kitty"}));
}

TEST(TerminalFilter, NeverKeepsAnOrphanWithoutATerminal) {
    ClaudeProcess orphan = processIn(std::nullopt);
    orphan.elapsedSeconds = 0;
    EXPECT_FALSE(keeps(orphan, {"kitty"}));
    EXPECT_FALSE(keeps(orphan, {""}));
}

TEST(TerminalFilter, JudgesARecentSessionByItsTerminalAlone) {
    EXPECT_FALSE(keeps(session(processIn("ghostty"), 0), {"kitty"}));
}

TEST(TerminalFilter, KeepsTheOrder) {
    std::vector<SessionInfo> sessions;
    std::vector<ClaudeProcess> orphans;
    for (const char* name : {"kitty", "xterm", "iTerm", "foot", "Kitty"}) {
        ClaudeProcess process = processIn(QString(name));
        orphans.push_back(process);
        sessions.push_back(session(process, 0));
    }
    const std::vector<ClaudeProcess> keptOrphans{orphans[0], orphans[2], orphans[4]};
    const std::vector<SessionInfo> keptSessions{sessions[0], sessions[2], sessions[4]};
    TerminalFilter::keepWanted(sessions, {"iterm", "kitty"}, now);
    TerminalFilter::keepWanted(orphans, {"iterm", "kitty"});
    EXPECT_EQ(sessions, keptSessions);
    EXPECT_EQ(orphans, keptOrphans);
}

} // namespace
} // namespace sallowmere
