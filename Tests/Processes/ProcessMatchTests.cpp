// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include "Support/Times.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using ProcessScanner::match;
using ProcessScanner::Matches;
using testing::ElementsAre;
using testing::IsEmpty;

const Timestamp now = at("2025-06-02T12:00:00Z");

ClaudeProcess process(std::int32_t pid, const std::optional<QString>& cwd,
                      std::int64_t elapsedSeconds = 0) {
    ClaudeProcess made;
    made.pid = pid;
    made.cwd = cwd;
    made.elapsedSeconds = elapsedSeconds;
    return made;
}

SessionInfo session(const QString& id, const std::optional<QString>& cwd, double age = 0) {
    SessionInfo made;
    made.id = id;
    made.cwd = cwd;
    made.startedAt = advancedBy(now, -age);
    return made;
}

/// The pid that a session got, 0 for none.
std::int32_t pidOf(const Matches& matches, const QString& id) {
    return matches.bySessionId.value(id).pid;
}

std::vector<std::int32_t> orphans(const Matches& matches) {
    std::vector<std::int32_t> pids;
    for (const ClaudeProcess& orphan : matches.orphans) {
        pids.push_back(orphan.pid);
    }
    return pids;
}

TEST(ProcessMatch, TiesAProcessToTheSessionInItsDirectory) {
    const ClaudeProcess processes[] = {process(1, "/a", 7), process(2, "/b", 8)};
    const SessionInfo sessions[] = {session("B", "/b"), session("A", "/a")};
    const Matches matches = match(processes, sessions, now);
    ASSERT_EQ(matches.bySessionId.size(), 2);
    EXPECT_EQ(matches.bySessionId["A"], processes[0]);
    EXPECT_EQ(matches.bySessionId["B"], processes[1]);
    EXPECT_THAT(matches.orphans, IsEmpty());
}

TEST(ProcessMatch, ComparesDirectoriesExactly) {
    const ClaudeProcess processes[] = {process(1, "/a/"), process(2, "/A"), process(3, "/a/b")};
    const SessionInfo sessions[] = {session("A", "/a")};
    const Matches matches = match(processes, sessions, now);
    EXPECT_TRUE(matches.bySessionId.isEmpty());
    EXPECT_THAT(orphans(matches), ElementsAre(1, 2, 3));
}

TEST(ProcessMatch, PassesOverSessionsWithoutADirectory) {
    const ClaudeProcess processes[] = {process(1, std::nullopt), process(2, "")};
    const SessionInfo sessions[] = {session("A", std::nullopt)};
    const Matches matches = match(processes, sessions, now);
    EXPECT_TRUE(matches.bySessionId.isEmpty());
    EXPECT_THAT(orphans(matches), ElementsAre(2));
}

TEST(ProcessMatch, DropsProcessesWithoutADirectoryFromBothResults) {
    const ClaudeProcess processes[] = {process(1, std::nullopt)};
    const SessionInfo sessions[] = {session("A", "/a")};
    const Matches matches = match(processes, sessions, now);
    EXPECT_TRUE(matches.bySessionId.isEmpty());
    EXPECT_THAT(matches.orphans, IsEmpty());
}

TEST(ProcessMatch, OfNoProcessesIsEmpty) {
    const SessionInfo sessions[] = {session("A", "/a")};
    const Matches matches = match({}, sessions, now);
    EXPECT_TRUE(matches.bySessionId.isEmpty());
    EXPECT_THAT(matches.orphans, IsEmpty());
}

TEST(ProcessMatch, WithoutSessionsLeavesOnlyOrphans) {
    const ClaudeProcess processes[] = {process(2, "/b"), process(1, "/a")};
    EXPECT_THAT(orphans(match(processes, {}, now)), ElementsAre(2, 1));
}

TEST(ProcessMatch, TakesAnOnlyCandidateHoweverFarItsStart) {
    const ClaudeProcess processes[] = {process(1, "/a", 1'000'000)};
    const SessionInfo sessions[] = {session("A", "/a", 5)};
    EXPECT_EQ(pidOf(match(processes, sessions, now), "A"), 1);
}

TEST(ProcessMatch, GivesEachSessionTheProcessThatStartedNearestToIt) {
    const ClaudeProcess processes[] = {process(1, "/a", 100), process(2, "/a", 5'000)};
    const SessionInfo sessions[] = {session("old", "/a", 4'900), session("new", "/a", 110)};
    const Matches matches = match(processes, sessions, now);
    EXPECT_EQ(pidOf(matches, "old"), 2);
    EXPECT_EQ(pidOf(matches, "new"), 1);
    EXPECT_THAT(matches.orphans, IsEmpty());
}

TEST(ProcessMatch, MeasuresTheDistanceOnBothSides) {
    const ClaudeProcess processes[] = {process(1, "/a", 1'000), process(2, "/a", 40)};
    const SessionInfo sessions[] = {session("A", "/a", 50)};
    EXPECT_EQ(pidOf(match(processes, sessions, now), "A"), 2);
    const SessionInfo future[] = {session("A", "/a", -50)};
    EXPECT_EQ(pidOf(match(processes, future, now), "A"), 2);
}

TEST(ProcessMatch, MeasuresFractionsOfASecond) {
    const ClaudeProcess processes[] = {process(1, "/a", 10), process(2, "/a", 11)};
    const SessionInfo nearer[] = {session("A", "/a", 10.6)};
    EXPECT_EQ(pidOf(match(processes, nearer, now), "A"), 2);
    const SessionInfo later[] = {session("A", "/a", 10.4)};
    EXPECT_EQ(pidOf(match(processes, later, now), "A"), 1);
}

TEST(ProcessMatch, CountsTheAgeBackFromThePresentMoment) {
    const ClaudeProcess processes[] = {process(1, "/a", 0), process(2, "/a", 600)};
    const SessionInfo sessions[] = {session("A", "/a", 100)};
    EXPECT_EQ(pidOf(match(processes, sessions, now), "A"), 1);
    EXPECT_EQ(pidOf(match(processes, sessions, advancedBy(now, 500)), "A"), 2);
}

TEST(ProcessMatch, AtEqualDistancesTakesTheProcessListedFirst) {
    const ClaudeProcess older[] = {process(1, "/a", 60), process(2, "/a", 40)};
    const ClaudeProcess younger[] = {process(1, "/a", 40), process(2, "/a", 60)};
    const SessionInfo sessions[] = {session("first", "/a", 50), session("second", "/a", 50)};
    for (const std::span<const ClaudeProcess> processes : {std::span(older), std::span(younger)}) {
        const Matches matches = match(processes, sessions, now);
        EXPECT_EQ(pidOf(matches, "first"), 1);
        EXPECT_EQ(pidOf(matches, "second"), 2);
    }
}

TEST(ProcessMatch, LetsTheSessionListedFirstChooseFirst) {
    const ClaudeProcess processes[] = {process(1, "/a", 100), process(2, "/a", 500)};
    const SessionInfo sessions[] = {session("first", "/a", 120), session("second", "/a", 100)};
    const Matches matches = match(processes, sessions, now);
    EXPECT_EQ(pidOf(matches, "first"), 1);
    EXPECT_EQ(pidOf(matches, "second"), 2);
}

TEST(ProcessMatch, GivesEachProcessToOneSession) {
    const ClaudeProcess processes[] = {process(1, "/a")};
    const SessionInfo sessions[] = {session("first", "/a"), session("second", "/a")};
    const Matches matches = match(processes, sessions, now);
    EXPECT_EQ(pidOf(matches, "first"), 1);
    EXPECT_FALSE(matches.bySessionId.contains("second"));
}

TEST(ProcessMatch, LeavesTheRestAsOrphansInTheOrderOfTheListing) {
    const ClaudeProcess processes[] = {process(9, "/a", 500), process(3, "/a", 100),
                                       process(5, "/a", 300)};
    const SessionInfo sessions[] = {session("A", "/a", 100)};
    const Matches matches = match(processes, sessions, now);
    EXPECT_EQ(pidOf(matches, "A"), 3);
    EXPECT_THAT(orphans(matches), ElementsAre(9, 5));
}

TEST(ProcessMatch, LetsTheLaterOfTwoSessionsWithOneIdReplaceTheEarlier) {
    const ClaudeProcess processes[] = {process(1, "/a"), process(2, "/b")};
    const SessionInfo sessions[] = {session("same", "/a"), session("same", "/b")};
    const Matches matches = match(processes, sessions, now);
    EXPECT_EQ(matches.bySessionId.size(), 1);
    EXPECT_EQ(pidOf(matches, "same"), 2);
    EXPECT_THAT(matches.orphans, IsEmpty()) << "the first was chosen all the same";
}

} // namespace
} // namespace sallowmere
