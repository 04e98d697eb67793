// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/RefreshEngineTest.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using transcript::assistant;
using transcript::question;
using transcript::toolResult;

/// What a refresh brings to the model.
class RefreshResult : public RefreshEngineTest {
protected:
    std::vector<std::int32_t> orphanPids() const {
        std::vector<std::int32_t> pids;
        for (const ClaudeProcess& orphan : state->orphanProcesses()) {
            pids.push_back(orphan.pid);
        }
        return pids;
    }

    std::vector<std::string> requestIds() const {
        std::vector<std::string> ids;
        for (const PermissionRequest& each : state->permissionRequests()) {
            ids.push_back(each.id.toStdString());
        }
        return ids;
    }

    /// The pid of the process of a session, 0 for none.
    std::int32_t pidOf(std::size_t session) const {
        const std::optional<ClaudeProcess>& process = state->sessions().at(session).process;
        return process ? process->pid : 0;
    }

    /// Sessions in kitty and in xterm, and one without a process; an orphan in kitty, one in xterm
    /// and one in no terminal.
    void fillDesktop() {
        addTranscript("a", {promptIn("/w/a", "s1", "in kitty")}, 2'000);
        addTranscript("b", {promptIn("/w/b", "s2", "in xterm")}, 2'001);
        addTranscript("c", {promptIn("/w/c", "s3", "nowhere")}, 2'002);
        processes.platformTerminals = {{"xterm", "XTerm", TerminalRule::Match::exact}};
        processes.listingText = "10 1 1000 0.0 10:00 kitty\n"
                                "20 1 1000 0.0 10:00 xterm\n"
                                "11 10 1000 1.5 05:00 claude\n"
                                "12 10 1000 0.0 05:00 claude\n"
                                "21 20 1000 0.0 05:00 claude\n"
                                "22 20 1000 0.0 05:00 claude\n"
                                "30 1 1000 0.0 05:00 claude\n";
        processes.directories = {
            {11, "/w/a"}, {12, "/e/1"}, {21, "/w/b"}, {22, "/e/2"}, {30, "/e/3"}};
    }
};

TEST_F(RefreshResult, IsTheSessionsNewestFirst) {
    addTranscript("a", {promptIn("/w", "s1", "older")}, 10);
    addTranscript("b", {promptIn("/w", "s2", "newer")}, 5);
    beginAndSettle();
    EXPECT_THAT(titles(), ElementsAre("newer", "older"));
    EXPECT_EQ(state->sessions()[0].id.toStdString(), pathOf("b"));
    EXPECT_EQ(state->sessions()[0].sessionId, "s2");
}

TEST_F(RefreshResult, GivesSessionsTheirProcessesAndListsTheOthers) {
    fillDesktop();
    beginAndSettle();
    EXPECT_THAT(titles(), ElementsAre("in kitty", "in xterm", "nowhere"));
    EXPECT_EQ(pidOf(0), 11);
    EXPECT_EQ(state->sessions()[0].process->terminalName, "kitty");
    EXPECT_EQ(state->sessions()[0].process->terminalPid, 10);
    EXPECT_EQ(state->sessions()[0].process->cpuPercent, 1.5);
    EXPECT_EQ(pidOf(1), 21);
    EXPECT_EQ(pidOf(2), 0);
    EXPECT_THAT(orphanPids(), ElementsAre(12, 22, 30));
}

TEST_F(RefreshResult, TakesAProcessAwayThatHasEnded) {
    fillDesktop();
    beginAndSettle();
    processes.listingText.clear();
    pass(2);
    EXPECT_EQ(pidOf(0), 0);
    EXPECT_THAT(orphanPids(), IsEmpty());
}

TEST_F(RefreshResult, IsFilteredByTheTerminalsOfTheSettings) {
    fillDesktop();
    settings.terminals = {"kitty"};
    beginAndSettle();
    EXPECT_THAT(titles(), ElementsAre("in kitty"));
    EXPECT_THAT(orphanPids(), ElementsAre(12));
}

TEST_F(RefreshResult, KeepsRecentSessionsWithoutATerminalWhenFiltered) {
    fillDesktop();
    settings.terminals = {"xterm"};
    files.file(pathOf("c")).modified = advancedBy(queue.now(), -1'799);
    beginAndSettle();
    EXPECT_THAT(titles(), ElementsAre("nowhere", "in xterm"));
    pass(2);
    EXPECT_THAT(titles(), ElementsAre("in xterm"));
    EXPECT_THAT(orphanPids(), ElementsAre(22));
}

TEST_F(RefreshResult, GivesAwayProcessesBeforeItFilters) {
    // The process of a session that is filtered away is no orphan.
    fillDesktop();
    settings.terminals = {"xterm"};
    beginAndSettle();
    EXPECT_THAT(orphanPids(), ElementsAre(22));
}

TEST_F(RefreshResult, IsAtOneMomentHoweverLongItTakes) {
    addTranscript("a", {promptIn("/w", "s1")}, 60).created = advancedBy(start, -100);
    addTranscript("b", {promptIn("/nowhere", "s2", "no process")}, 60);
    files.addFile(notification("p.json"), R"({"session_id":"s1"})", advancedBy(start, -60));
    processes.platformTerminals = {{"xterm", "XTerm", TerminalRule::Match::exact}};
    processes.listingText = "10 1 1000 0.0 10:00 xterm\n"
                            "11 10 1000 0.0 01:40 claude\n"
                            "12 10 1000 0.0 01:01:40 claude\n";
    processes.directories = {{11, "/w"}, {12, "/w"}};
    settings.terminals = {"xterm"};
    int reads = 0;
    engineClock = [&] { return advancedBy(start, 3'600 * reads++); };
    begin();
    workQueue.runOne();
    EXPECT_EQ(reads, 1);
    queue.runPosted();
    EXPECT_THAT(titles(), ElementsAre("Hello", "no process"));
    EXPECT_EQ(state->sessions()[0].status, SessionStatus::working);
    EXPECT_EQ(pidOf(0), 11);
    EXPECT_THAT(orphanPids(), ElementsAre(12));
    EXPECT_THAT(requestIds(), ElementsAre("p.json"));
}

TEST_F(RefreshResult, ShowsAQuestionFromTheTurnItIsAskedToTheTurnItIsAnswered) {
    addTranscript("a", {promptIn("/w", "s1")});
    beginAndSettle();
    EXPECT_FALSE(state->expanded());
    addTranscript("a", {promptIn("/w", "s1"), assistant(question("Which?"))});
    pass(2);
    ASSERT_TRUE(state->sessions().at(0).ask.has_value());
    EXPECT_EQ(state->sessions()[0].ask->question, "Which?");
    EXPECT_EQ(state->sessions()[0].status, SessionStatus::waiting);
    EXPECT_TRUE(state->expanded());
    EXPECT_THAT(soundsPlayed(), ElementsAre("Ping"));
    addTranscript("a", {promptIn("/w", "s1"), assistant(question("Which?")), toolResult()});
    pass(2);
    EXPECT_FALSE(state->sessions().at(0).ask.has_value());
    EXPECT_EQ(state->sessions()[0].status, SessionStatus::working);
    pass(3.5);
    EXPECT_FALSE(state->expanded());
    EXPECT_THAT(soundsPlayed(), ElementsAre("Ping"));
}

TEST_F(RefreshResult, ShowsPermissionRequestsWhileTheirFilesAreThere) {
    beginAndSettle();
    files.addFile(notification("p.json"), R"({"session_id":"s1","message":"May I?"})", queue.now());
    pass(2);
    ASSERT_THAT(state->permissionRequests(), SizeIs(1));
    EXPECT_EQ(state->permissionRequests()[0].id, "p.json");
    EXPECT_EQ(state->permissionRequests()[0].sessionId, "s1");
    EXPECT_EQ(state->permissionRequests()[0].message, "May I?");
    EXPECT_EQ(state->permissionRequests()[0].receivedAt, start);
    EXPECT_TRUE(state->expanded());
    files.remove(notification("p.json"));
    pass(2);
    EXPECT_THAT(requestIds(), IsEmpty());
}

TEST_F(RefreshResult, ForgetsAPermissionRequestWhenItIsAnswered) {
    files.addFile(notification("p.json"), R"({"session_id":"s1"})", queue.now());
    beginAndSettle();
    state->respondToPermission(state->permissionRequests().at(0), 1);
    EXPECT_THAT(requestIds(), IsEmpty());
    pass(2);
    EXPECT_THAT(requestIds(), IsEmpty());
}

TEST_F(RefreshResult, ForgetsAPermissionRequestThatNobodyAnswers) {
    files.addFile(notification("p.json"), R"({"session_id":"s1"})", queue.now());
    beginAndSettle();
    pass(88);
    EXPECT_THAT(requestIds(), ElementsAre("p.json"));
    pass(2);
    EXPECT_THAT(requestIds(), IsEmpty());
    EXPECT_FALSE(files.status(notification("p.json"), Links::keep).has_value());
}

/// Where the figures come from.
class RefreshedUsage : public RefreshEngineTest {
protected:
    RefreshedUsage() {
        addTranscript("a", {transcript::assistantMessage(
                               R"("id":"m1","usage":{"input_tokens":100,"output_tokens":10})",
                               transcript::time("2026-11-20T11:59:00Z"))});
    }

    double fiveHourTokens() const { return state->usage().fiveHour.weightedTokens; }
    std::optional<double> officialShare() const { return state->usage().fiveHour.officialFraction; }
};

TEST_F(RefreshedUsage, IsComputedFromTheTranscripts) {
    settings.usageAPIEnabled = false;
    beginAndSettle();
    EXPECT_EQ(fiveHourTokens(), 150);
    EXPECT_EQ(officialShare(), std::nullopt);
    EXPECT_EQ(state->usage().computedAt, start);
}

TEST_F(RefreshedUsage, ReadsOnWhereItStopped) {
    beginAndSettle();
    FakeFileSystem::File& file = files.file(pathOf("a"));
    const std::size_t before = file.content.size();
    file.content += transcript::file({transcript::assistantMessage(
        R"("id":"m2","usage":{"input_tokens":1})", transcript::time("2026-11-20T12:00:00Z"))});
    queue.advance(20);
    files.forget();
    settle();
    EXPECT_EQ(fiveHourTokens(), 151);
    // What was appended once for the usage, and once for the session with all before it.
    EXPECT_EQ(files.bytesRead(), 2 * file.content.size() - before);
}

TEST_F(RefreshedUsage, ShowsOfficialFiguresWithTheNextComputationOnly) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    settle();
    pass(19.5);
    EXPECT_EQ(officialShare(), std::nullopt);
    pass(0.5);
    EXPECT_EQ(officialShare(), 0.5);
    EXPECT_EQ(fiveHourTokens(), 150);
}

TEST_F(RefreshedUsage, IsFirstComputedWithoutOfficialFiguresHoweverFastTheyCome) {
    begin();
    workQueue.runOne();
    workQueue.runOne();
    fetches.at(0).completion(officialFigures(0.5, start));
    settle();
    EXPECT_EQ(fiveHourTokens(), 150);
    EXPECT_EQ(officialShare(), std::nullopt);
}

TEST_F(RefreshedUsage, KeepsTheLastOfficialFiguresWhenTheServiceFails) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    settle();
    pass(60);
    fetches.at(1).completion(std::nullopt);
    pass(20);
    EXPECT_EQ(officialShare(), 0.5);
    pass(40);
    fetches.at(2).completion(officialFigures(0.75, queue.now()));
    pass(20);
    EXPECT_EQ(officialShare(), 0.75);
}

TEST_F(RefreshedUsage, FallsBackOnTheComputedWhenTheOfficialFiguresAreTooOld) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    settle();
    pass(880);
    EXPECT_EQ(officialShare(), 0.5);
    pass(40);
    EXPECT_EQ(officialShare(), std::nullopt);
}

TEST_F(RefreshedUsage, ReadsTheClockAgainForTheOfficialFigures) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    settle();
    queue.advance(20);
    // The scan that is due as well.
    workQueue.runOne();
    int reads = 0;
    engineClock = [&] { return advancedBy(start, 100 * reads++); };
    settle();
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(state->usage().computedAt, start);
    EXPECT_EQ(state->usage().fiveHour.resetsIn, 3'500);
}

} // namespace
} // namespace sallowmere
