// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/RefreshEngineTest.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A machine on which things go wrong. The model shows what can still be known, and the engine
/// goes on.
class RefreshOnAHardDay : public RefreshEngineTest {
protected:
    RefreshOnAHardDay() {
        addTranscript("a", lines, 60);
        files.addFile(notification("p.json"), R"({"session_id":"s1"})", queue.now());
        processes.listingText = goodListing;
        processes.directories = {{11, "/w"}, {12, "/elsewhere"}};
    }

    void expectEverything() const {
        EXPECT_THAT(titles(), ElementsAre("Hello"));
        EXPECT_TRUE(state->sessions().at(0).process.has_value());
        EXPECT_THAT(state->orphanProcesses(), SizeIs(1));
        EXPECT_EQ(state->usage().fiveHour.weightedTokens, 150);
    }

    void loseHome() {
        files.remove(pathOf("a"));
        files.remove(notification("p.json"));
    }

    const std::vector<std::string> lines{
        promptIn("/w", "s1"),
        transcript::assistantMessage(R"("id":"m1","usage":{"input_tokens":100,"output_tokens":10})",
                                     transcript::time("2026-11-20T11:59:00Z"))};
    const std::string goodListing = "10 1 1000 0.0 10:00 kitty\n"
                                    "11 10 1000 1.5 05:00 claude\n"
                                    "12 10 1000 0.0 05:00 claude\n";
};

TEST_F(RefreshOnAHardDay, ShowsNoProcessesWithoutAListing) {
    beginAndSettle();
    expectEverything();
    pass(10);
    processes.listingText.clear();
    pass(2);
    EXPECT_THAT(titles(), ElementsAre("Hello"));
    EXPECT_FALSE(state->sessions().at(0).process.has_value());
    EXPECT_THAT(state->orphanProcesses(), IsEmpty());
    processes.listingText = goodListing;
    pass(2);
    expectEverything();
    // That is no news.
    EXPECT_FALSE(state->expanded());
}

TEST_F(RefreshOnAHardDay, TakesNothingFromAListingThatIsRubbish) {
    beginAndSettle();
    using namespace std::string_literals;
    for (const std::string& rubbish :
         {"\n\n\n"s, "\0\0\0\0"s, "\xFF\xFE\x80 11 1 1000 0.0 05:00 claude\n"s,
          "error: the kernel says no\n"s, "11 10 1000 1.5 claude\n"s,
          "99999999999 1 1000 0.0 05:00 claude\n"s, "11 10 -1 1.5 05:00 claude\n"s,
          "11 10 1000 nan 05:00 claude\n"s, "11 10 1000 1.5 05:00 clau"s,
          std::string(1'000'000, 'x'), std::string(1'000'000, '\n'),
          std::string(1'000'000, ' ') + "claude\n"}) {
        processes.listingText = rubbish;
        pass(2);
        EXPECT_THAT(titles(), ElementsAre("Hello")) << rubbish.substr(0, 50);
        EXPECT_FALSE(state->sessions().at(0).process.has_value()) << rubbish.substr(0, 50);
        EXPECT_THAT(state->orphanProcesses(), IsEmpty()) << rubbish.substr(0, 50);
    }
    processes.listingText = goodListing;
    pass(2);
    expectEverything();
}

TEST_F(RefreshOnAHardDay, FindsItsWayAmongProcessesThatAreTheirOwnAncestors) {
    beginAndSettle();
    processes.listingText = "10 11 1000 0.0 10:00 bash\n"
                            "11 10 1000 1.5 05:00 claude\n"
                            "12 12 1000 0.0 x:y-z claude\n";
    pass(2);
    expectEverything();
    EXPECT_EQ(state->sessions()[0].process->terminalName, std::nullopt);
}

TEST_F(RefreshOnAHardDay, FollowsNotificationsThatComeAndGo) {
    beginAndSettle();
    EXPECT_THAT(state->permissionRequests(), SizeIs(1));
    for (int i = 0; i < 20; ++i) {
        files.remove(notification("p.json"));
        pass(2);
        EXPECT_THAT(state->permissionRequests(), IsEmpty());
        files.addFile(notification("p.json"), R"({"session_id":"s1"})", queue.now());
        pass(2);
        EXPECT_THAT(state->permissionRequests(), SizeIs(1));
    }
}

TEST_F(RefreshOnAHardDay, WaitsForANotificationToBeWrittenWhole) {
    loseHome();
    beginAndSettle();
    const std::string whole = R"({"session_id":"s1","message":"May I?"})";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        files.addFile(notification("p.json"), whole.substr(0, length), queue.now());
        pass(2);
        EXPECT_THAT(state->permissionRequests(), IsEmpty()) << length;
    }
    EXPECT_THAT(soundsPlayed(), IsEmpty());
    files.addFile(notification("p.json"), whole, queue.now());
    pass(2);
    EXPECT_THAT(state->permissionRequests(), SizeIs(1));
    EXPECT_THAT(soundsPlayed(), ElementsAre("Submarine"));
}

TEST_F(RefreshOnAHardDay, KeepsTheUsageWhenTheHomeIsGoneAndListsNoSessions) {
    beginAndSettle();
    expectEverything();
    loseHome();
    pass(20);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
    // Its process is still there, and belongs to no session now.
    EXPECT_THAT(state->orphanProcesses(), SizeIs(2));
    EXPECT_EQ(state->usage().fiveHour.weightedTokens, 150);
    EXPECT_EQ(state->usage().computedAt, queue.now());
}

TEST_F(RefreshOnAHardDay, ListsTheSessionsAgainWhenTheHomeIsBack) {
    beginAndSettle();
    pass(10);
    sounds.played.clear();
    loseHome();
    pass(40);
    files.addFile(pathOf("a"), transcript::file(lines), advancedBy(start, -60));
    pass(20);
    expectEverything();
    // What comes back is no news, though its turn is over meanwhile.
    EXPECT_THAT(soundsPlayed(), IsEmpty());
    EXPECT_FALSE(state->expanded());
}

TEST_F(RefreshOnAHardDay, StartsWithoutAHome) {
    loseHome();
    beginAndSettle();
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(state->usage().fiveHour.weightedTokens, 0);
    EXPECT_EQ(state->usage().computedAt, start);
    addTranscript("a", lines);
    pass(20);
    expectEverything();
}

TEST_F(RefreshOnAHardDay, GoesOnWhenTheClockIsTurnedBackAnHour) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    pass(20);
    const Timestamp back = advancedBy(start, -3'600);
    queue.setClock(back);
    pass(20);
    // A message that was sent in what is now the future has not been sent yet.
    EXPECT_THAT(titles(), ElementsAre("Hello"));
    EXPECT_EQ(state->sessions()[0].status, SessionStatus::working);
    EXPECT_TRUE(state->sessions()[0].process.has_value());
    EXPECT_THAT(state->permissionRequests(), SizeIs(1));
    EXPECT_EQ(state->usage().computedAt, advancedBy(back, 20));
    addTranscript("b", {promptIn("/elsewhere", "s2", "Another")});
    pass(2);
    EXPECT_THAT(titles(), ElementsAre("Hello", "Another"));
    EXPECT_THAT(state->orphanProcesses(), IsEmpty());
}

TEST_F(RefreshOnAHardDay, GoesOnWhenTheClockIsTurnedForwardADay) {
    beginAndSettle();
    queue.setClock(advancedBy(start, 86'400));
    pass(20);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
    EXPECT_EQ(state->usage().computedAt, advancedBy(start, 86'420));
    queue.setClock(advancedBy(start, 60));
    pass(20);
    expectEverything();
}

TEST_F(RefreshOnAHardDay, LeavesOutATranscriptThatCannotBeRead) {
    addTranscript("b", {promptIn("/w", "s2", "Unreadable")}).readable = false;
    beginAndSettle();
    expectEverything();
    files.file(pathOf("b")).readable = true;
    pass(2);
    EXPECT_THAT(titles(), ElementsAre("Unreadable", "Hello"));
}

TEST_F(RefreshOnAHardDay, ListsOneOfTwoTranscriptsWhosePathsReadTheSame) {
    // Two names that are not UTF-8 become one text, and the model tells sessions apart by it.
    addTranscript("\xFE", {promptIn("/w", "s2", "One")}, 5);
    addTranscript("\xFF", {promptIn("/w", "s3", "Other")}, 6);
    beginAndSettle();
    pass(2);
    EXPECT_THAT(titles(), ElementsAre("One", "Hello"));
}

} // namespace
} // namespace sallowmere
