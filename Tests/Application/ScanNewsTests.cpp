// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/AppStateTest.h"

#include "Support/Texts.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr SessionStatus working = SessionStatus::working;
constexpr SessionStatus waiting = SessionStatus::waiting;
constexpr SessionStatus done = SessionStatus::done;
constexpr SessionStatus idle = SessionStatus::idle;

/// What one scan after another tells the user of.
class ScanNews : public AppStateTest {
protected:
    /// The sounds of one more scan; the panel is closed and long quiet before it.
    std::vector<std::string> soundsOf(std::vector<SessionInfo> sessions,
                                      std::vector<PermissionRequest> permissions = {}) {
        queue.advance(60);
        EXPECT_FALSE(state->expanded());
        sounds.played.clear();
        scan(std::move(sessions), std::move(permissions));
        return soundsPlayed();
    }

    bool peeks() const { return state->expanded(); }
};

TEST_F(ScanNews, ReplaceWhatWasThereWhole) {
    const ClaudeProcess orphan{7, 1.5, {}, 60, {}, {}, {}};
    state->applyScan({session("a"), session("b")}, {orphan}, {request("p"), request("q")});
    EXPECT_THAT(state->sessions(), ElementsAre(session("a"), session("b")));
    EXPECT_THAT(state->orphanProcesses(), ElementsAre(orphan));
    EXPECT_THAT(state->permissionRequests(), ElementsAre(request("p"), request("q")));
    state->applyScan({session("b")}, {}, {request("q")});
    EXPECT_THAT(state->sessions(), ElementsAre(session("b")));
    EXPECT_THAT(state->orphanProcesses(), IsEmpty());
    EXPECT_THAT(state->permissionRequests(), ElementsAre(request("q")));
}

TEST_F(ScanNews, OfASessionSeenForTheFirstTimeAreNone) {
    EXPECT_THAT(soundsOf({session("a", done), asking(session("b")), planning(session("c"))}),
                IsEmpty());
    EXPECT_FALSE(peeks());
    EXPECT_TRUE(state->recentCompletions().isEmpty());
}

TEST_F(ScanNews, OfASessionThatComesBackAreNone) {
    scan({session("a")});
    scan({});
    EXPECT_THAT(soundsOf({asking(session("a"))}), IsEmpty());
    EXPECT_FALSE(peeks());
}

TEST_F(ScanNews, OfATurnThatEndedAreGlassAndAPeek) {
    scan({session("a")});
    EXPECT_THAT(soundsOf({session("a", done)}), ElementsAre("Glass"));
    EXPECT_TRUE(peeks());
    EXPECT_EQ(state->recentCompletions(), (AppState::Completions{{"the a", queue.now()}}));
}

TEST_F(ScanNews, AreTheEndOfATurnOnlyFromWorkingToDone) {
    for (const SessionStatus before : {working, waiting, done, idle}) {
        for (const SessionStatus after : {working, waiting, done, idle}) {
            restart();
            scan({session("a", before)});
            const bool ended = before == working && after == done;
            EXPECT_EQ(soundsOf({session("a", after)}).size(), ended ? 1U : 0U)
                << utf8(rawValue(before)) << ' ' << utf8(rawValue(after));
            EXPECT_EQ(peeks(), ended);
            EXPECT_EQ(state->recentCompletions().isEmpty(), !ended);
        }
    }
}

TEST_F(ScanNews, AreNoEndOfATurnAfterAWaitInBetween) {
    scan({session("a", working)});
    scan({session("a", waiting)});
    EXPECT_THAT(soundsOf({session("a", done)}), IsEmpty());
    EXPECT_TRUE(state->recentCompletions().isEmpty());
}

TEST_F(ScanNews, OfAQuestionArePingAndAPeek) {
    scan({session("a")});
    EXPECT_THAT(soundsOf({asking(session("a"))}), ElementsAre("Ping"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, OfAPlanArePingAndAPeek) {
    scan({session("a")});
    EXPECT_THAT(soundsOf({planning(session("a"))}), ElementsAre("Ping"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, OfWhatIsStillAskedOrNoLongerAreNone) {
    const SessionInfo both = planning(asking(session("a")));
    scan({both});
    SessionInfo other = both;
    other.ask->question = QStringLiteral("And now?");
    other.plan = QStringLiteral("Then that.");
    EXPECT_THAT(soundsOf({other}), IsEmpty());
    EXPECT_FALSE(peeks());
    EXPECT_THAT(soundsOf({session("a", waiting)}), IsEmpty());
    EXPECT_FALSE(peeks());
}

TEST_F(ScanNews, OfAPlanBesideAQuestionAreNews) {
    scan({asking(session("a"))});
    EXPECT_THAT(soundsOf({planning(asking(session("a")))}), ElementsAre("Ping"));
    EXPECT_TRUE(peeks());
    EXPECT_THAT(soundsOf({planning(session("a"))}), IsEmpty());
    EXPECT_THAT(soundsOf({asking(planning(session("a")))}), ElementsAre("Ping"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, OfOneSessionAreIndependentOfEachOther) {
    scan({session("a")});
    SessionInfo everything = planning(asking(session("a")));
    everything.status = done;
    EXPECT_THAT(soundsOf({everything}, {request("p")}), ElementsAre("Glass", "Ping", "Submarine"));
}

TEST_F(ScanNews, OfAnyOfTheSessionsPeek) {
    const SessionInfo finished = session("a", done);
    for (const std::vector<SessionInfo>& after :
         {std::vector{finished, session("b")}, std::vector{session("b"), finished}}) {
        restart();
        scan({session("a"), session("b")});
        EXPECT_THAT(soundsOf(after), ElementsAre("Glass"));
        EXPECT_TRUE(peeks());
    }
}

TEST_F(ScanNews, OfSeveralSessionsSoundInTheOrderOfTheScan) {
    scan({session("a"), session("b")});
    EXPECT_THAT(soundsOf({asking(session("b")), session("a", done)}, {request("p")}),
                ElementsAre("Ping", "Glass", "Submarine"));
}

TEST_F(ScanNews, OfTwoTurnsThatEndedAtOnceSoundOnce) {
    scan({session("a"), session("b")});
    EXPECT_THAT(soundsOf({session("a", done), session("b", done)}), ElementsAre("Glass"));
    EXPECT_EQ(state->recentCompletions(),
              (AppState::Completions{{"the a", queue.now()}, {"the b", queue.now()}}));
}

TEST_F(ScanNews, ArePlayedAtAThirdOfFullVolume) {
    scan({session("a"), session("b"), session("c")});
    scan({session("a", done), asking(session("b")), planning(session("c"))}, {request("p")});
    EXPECT_THAT(sounds.played,
                ElementsAre(FakeSounds::Played{"Glass", 0.35F}, FakeSounds::Played{"Ping", 0.35F},
                            FakeSounds::Played{"Submarine", 0.35F}));
}

TEST_F(ScanNews, AreFoundById) {
    SessionInfo moved = session("a");
    scan({moved});
    moved.id = QStringLiteral("b");
    moved.status = done;
    EXPECT_THAT(soundsOf({moved}), IsEmpty());
    SessionInfo renamed = moved;
    renamed.status = working;
    scan({renamed});
    renamed.sessionId = QStringLiteral("another");
    renamed.status = done;
    EXPECT_THAT(soundsOf({renamed}), ElementsAre("Glass"));
    EXPECT_EQ(state->recentCompletions().keys(), QList<QString>{"another"});
}

TEST_F(ScanNews, OfPermissionRequestsAreSubmarineAndAPeek) {
    EXPECT_THAT(soundsOf({}, {request("p")}), ElementsAre("Submarine"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, OfThreePermissionRequestsSoundOnce) {
    // Far enough apart for the player to let each of them through.
    soundClock = [this, seconds = 0]() mutable { return advancedBy(start, seconds += 10); };
    EXPECT_THAT(soundsOf({}, {request("p"), request("q"), request("r")}), ElementsAre("Submarine"));
}

TEST_F(ScanNews, OfARequestThatStaysPendingAreNone) {
    scan({}, {request("p")});
    EXPECT_THAT(soundsOf({}, {request("p")}), IsEmpty());
    EXPECT_FALSE(peeks());
    PermissionRequest rewritten = request("p");
    rewritten.message = QStringLiteral("Really?");
    EXPECT_THAT(soundsOf({}, {rewritten}), IsEmpty());
    EXPECT_THAT(soundsOf({}, {}), IsEmpty());
    EXPECT_FALSE(peeks());
}

TEST_F(ScanNews, OfARequestBehindOneThatStaysAreNews) {
    scan({}, {request("p")});
    EXPECT_THAT(soundsOf({}, {request("p"), request("q")}), ElementsAre("Submarine"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, OfARequestThatWasAnsweredAndIsThereStillAreNewsAgain) {
    scan({}, {request("p")});
    state->respondToPermission(request("p"), 1);
    EXPECT_THAT(soundsOf({}, {request("p")}), ElementsAre("Submarine"));
    EXPECT_TRUE(peeks());
}

TEST_F(ScanNews, AreSilentWithSoundsOffAndPeekAllTheSame) {
    settings.soundsEnabled = false;
    const std::vector<std::pair<SessionInfo, std::vector<PermissionRequest>>> news{
        {session("a", done), {}},
        {asking(session("a")), {}},
        {planning(session("a")), {}},
        {session("a"), {request("p")}}};
    for (const auto& [after, permissions] : news) {
        restart();
        scan({session("a")});
        EXPECT_THAT(soundsOf({after}, permissions), IsEmpty());
        EXPECT_TRUE(peeks());
    }
}

TEST_F(ScanNews, AreNoneWithoutAChange) {
    scan({session("a"), session("b", done), session("c", idle)});
    EXPECT_THAT(soundsOf({session("a"), session("b", done), session("c", idle)}), IsEmpty());
    EXPECT_FALSE(peeks());
}

using ScanNewsDeathTest = ScanNews;

TEST_F(ScanNewsDeathTest, CannotBeToldOfTwoSessionsWithOneId) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    SessionInfo twin = session("a");
    twin.sessionId = QStringLiteral("another");
    scan({session("a"), twin});
    EXPECT_DEATH(scan({}), "two sessions share an id");
}

class RecentCompletions : public AppStateTest {
protected:
    void complete(const QString& id) {
        scan({session(id)});
        scan({session(id, done)});
    }

    std::vector<std::string> remembered() const {
        return utf8(QStringList(state->recentCompletions().keys()));
    }
};

TEST_F(RecentCompletions, LastForTenMinutes) {
    complete("a");
    queue.advance(599.5);
    scan({});
    EXPECT_THAT(remembered(), ElementsAre("the a"));
    queue.advance(0.5);
    EXPECT_THAT(remembered(), ElementsAre("the a"));
    scan({});
    EXPECT_THAT(remembered(), IsEmpty());
}

TEST_F(RecentCompletions, EndEachInItsTime) {
    complete("a");
    queue.advance(300);
    complete("b");
    queue.advance(300);
    scan({});
    EXPECT_THAT(remembered(), ElementsAre("the b"));
}

TEST_F(RecentCompletions, BeginAnewWithTheNextTurn) {
    complete("a");
    queue.advance(300);
    complete("a");
    queue.advance(599);
    scan({});
    EXPECT_THAT(remembered(), ElementsAre("the a"));
}

TEST_F(RecentCompletions, AreAcknowledgedByJumpingThere) {
    complete("a");
    complete("b");
    SessionInfo other = session("a");
    other.id = QStringLiteral("another transcript of it");
    state->jump(other);
    EXPECT_THAT(remembered(), ElementsAre("the b"));
}

TEST_F(RecentCompletions, OutliveTheirSessionAndWhatItDoesNext) {
    complete("a");
    scan({session("a", working)});
    scan({});
    EXPECT_THAT(remembered(), ElementsAre("the a"));
}

TEST_F(RecentCompletions, StayWhenTheClockIsTurnedBack) {
    complete("a");
    queue.setClock(advancedBy(start, -3'600));
    scan({});
    EXPECT_THAT(remembered(), ElementsAre("the a"));
    queue.setClock(advancedBy(start, 600));
    scan({});
    EXPECT_THAT(remembered(), IsEmpty());
}

} // namespace
} // namespace sallowmere
