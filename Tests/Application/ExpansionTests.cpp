// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/AppStateTest.h"

#include "Support/Texts.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;

/// How the panel opens and closes. Delays are tested a little before and a little after they end.
class Expansion : public AppStateTest {
protected:
    void enter() { state->hoverChanged(true); }
    void leave() { state->hoverChanged(false); }

    void bringNews() {
        ++newsCount;
        scan({}, {request(QString::number(newsCount))});
    }

    bool isExpanded() const { return state->expanded(); }

    /// Whether the panel is open now and closes when `seconds` have passed, neither earlier nor
    /// later.
    bool closesAfter(double seconds) {
        constexpr double moment = 0.001;
        const bool before = isExpanded();
        queue.advance(seconds - moment);
        const bool shortlyBefore = isExpanded();
        queue.advance(2 * moment);
        return before && shortlyBefore && !isExpanded();
    }

    bool staysOpen() {
        queue.advance(3'600);
        return isExpanded();
    }

    int newsCount = 0;
};

TEST_F(Expansion, BeginsWhenThePointerEnters) {
    EXPECT_FALSE(isExpanded());
    enter();
    EXPECT_TRUE(isExpanded());
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, EndsAThirdOfASecondAfterThePointerLeft) {
    enter();
    leave();
    EXPECT_TRUE(closesAfter(0.35));
}

TEST_F(Expansion, ByNewsEndsAfterFiveSeconds) {
    bringNews();
    EXPECT_TRUE(closesAfter(5.0));
}

TEST_F(Expansion, ByNewsOfEachKindEndsAfterFiveSeconds) {
    for (const SessionInfo& after : {session("a", SessionStatus::done), asking(session("a")),
                                     planning(session("a")), session("a")}) {
        scan({session("a")});
        EXPECT_FALSE(isExpanded());
        scan({after},
             after == session("a") ? std::vector{request("p")} : std::vector<PermissionRequest>());
        EXPECT_TRUE(closesAfter(5.0));
    }
}

TEST_F(Expansion, DoesNotFollowFromAScanWithoutNews) {
    scan({session("a")});
    scan({session("a")});
    EXPECT_FALSE(isExpanded());
    EXPECT_EQ(queue.scheduled(), 0U);
}

TEST_F(Expansion, ByPinningLasts) {
    state->togglePin();
    EXPECT_TRUE(state->pinned());
    EXPECT_TRUE(isExpanded());
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, GoesOnWhenThePointerComesBackInTime) {
    enter();
    leave();
    queue.advance(0.3);
    enter();
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, DoesNotFlickerWhenThePointerComesBackInTime) {
    enter();
    std::vector<bool> changes;
    QObject::connect(state.get(), &AppState::expandedWillChange, state.get(),
                     [&](bool expanded) { changes.push_back(expanded); });
    leave();
    queue.advance(0.3);
    enter();
    queue.advance(10);
    EXPECT_THAT(changes, ElementsAre(true));
}

TEST_F(Expansion, CountsFromTheLastTimeThePointerLeft) {
    enter();
    leave();
    queue.advance(0.3);
    leave();
    EXPECT_EQ(queue.scheduled(), 1U);
    EXPECT_TRUE(closesAfter(0.35));
}

TEST_F(Expansion, ByNewsGoesOnWhenThePointerEnters) {
    bringNews();
    queue.advance(4);
    enter();
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, ByNewsEndsEarlyWhenThePointerWasThere) {
    bringNews();
    enter();
    leave();
    EXPECT_TRUE(closesAfter(0.35));
}

TEST_F(Expansion, IsNotProlongedByNews) {
    bringNews();
    queue.advance(3);
    bringNews();
    EXPECT_EQ(queue.scheduled(), 1U);
    EXPECT_TRUE(closesAfter(2.0));
}

TEST_F(Expansion, OfThePointerIsNotEndedByNews) {
    enter();
    bringNews();
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, AfterThePointerLeftIsNotProlongedByNews) {
    enter();
    leave();
    queue.advance(0.1);
    bringNews();
    EXPECT_TRUE(closesAfter(0.25));
}

TEST_F(Expansion, ByNewsLastsFiveSecondsThoughThePointerJustPassed) {
    // The pointer leaves a closed panel, which has nothing to close.
    leave();
    EXPECT_FALSE(isExpanded());
    queue.advance(0.1);
    bringNews();
    EXPECT_EQ(queue.scheduled(), 1U);
    EXPECT_TRUE(closesAfter(5.0));
}

TEST_F(Expansion, CanBeginAgainByNews) {
    bringNews();
    EXPECT_TRUE(closesAfter(5.0));
    bringNews();
    EXPECT_TRUE(closesAfter(5.0));
}

TEST_F(Expansion, ThatEndsClearsTheSelection) {
    enter();
    state->toggleSelection("a");
    leave();
    queue.advance(0.3);
    EXPECT_EQ(utf8(state->selectedSessionId()), "a");
    queue.advance(0.1);
    EXPECT_FALSE(isExpanded());
    EXPECT_EQ(state->selectedSessionId(), std::nullopt);
}

TEST_F(Expansion, DoesNotEndWhilePinned) {
    state->togglePin();
    enter();
    leave();
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, GoesOnAfterUnpinningUntilThePointerEntersAndLeavesAgain) {
    state->togglePin();
    enter();
    leave();
    state->togglePin();
    EXPECT_FALSE(state->pinned());
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
    enter();
    EXPECT_TRUE(staysOpen());
    leave();
    EXPECT_TRUE(closesAfter(0.35));
}

TEST_F(Expansion, SurvivesWhatWasQueuedBeforePinning) {
    state->toggleSelection("a");
    for (const bool byNews : {true, false}) {
        if (byNews) {
            bringNews();
        } else {
            enter();
            leave();
        }
        EXPECT_EQ(queue.scheduled(), 1U);
        state->togglePin();
        EXPECT_TRUE(staysOpen());
        EXPECT_EQ(queue.scheduled(), 0U);
        EXPECT_EQ(utf8(state->selectedSessionId()), "a");
        state->togglePin();
        EXPECT_TRUE(staysOpen());
    }
}

TEST_F(Expansion, EndsWhenItWasPinnedForAMomentOnly) {
    bringNews();
    queue.advance(1);
    state->togglePin();
    state->togglePin();
    EXPECT_TRUE(closesAfter(4.0));
}

TEST_F(Expansion, DoesNotEndWhileAPromptIsEdited) {
    enter();
    state->setEditingPrompt(true);
    leave();
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_TRUE(staysOpen());
    state->setEditingPrompt(false);
    EXPECT_TRUE(staysOpen());
    enter();
    leave();
    EXPECT_TRUE(closesAfter(0.35));
}

TEST_F(Expansion, SurvivesWhatWasQueuedBeforeEditing) {
    state->toggleSelection("a");
    enter();
    leave();
    state->setEditingPrompt(true);
    EXPECT_TRUE(staysOpen());
    EXPECT_EQ(queue.scheduled(), 0U);
    EXPECT_EQ(utf8(state->selectedSessionId()), "a");
}

TEST_F(Expansion, IsNotEndedByLeavingForTheTimeOfAnEdit) {
    // Leaving takes back what was queued even when it queues nothing itself.
    bringNews();
    state->setEditingPrompt(true);
    leave();
    EXPECT_EQ(queue.scheduled(), 0U);
    state->setEditingPrompt(false);
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, FollowsNewsAlsoWhilePinnedOrEditing) {
    state->setEditingPrompt(true);
    bringNews();
    EXPECT_TRUE(isExpanded());
    EXPECT_TRUE(staysOpen());
}

TEST_F(Expansion, IsOverWhenTheModelIsGone) {
    bringNews();
    state.reset();
    queue.advance(10);
    EXPECT_EQ(queue.scheduled(), 0U);
}

TEST_F(Expansion, KeepsItsDelaysWhenTheClockIsTurned) {
    bringNews();
    queue.advance(1);
    queue.setClock(advancedBy(queue.now(), -3'600));
    EXPECT_TRUE(closesAfter(4.0));
    bringNews();
    queue.setClock(advancedBy(queue.now(), 7'200));
    EXPECT_TRUE(closesAfter(5.0));
}

class Selection : public AppStateTest {};

TEST_F(Selection, OfTheSelectedSessionClearsIt) {
    state->toggleSelection("a");
    EXPECT_EQ(utf8(state->selectedSessionId()), "a");
    state->toggleSelection("a");
    EXPECT_EQ(state->selectedSessionId(), std::nullopt);
}

TEST_F(Selection, OfAnotherSessionSwitches) {
    state->toggleSelection("a");
    state->toggleSelection("b");
    EXPECT_EQ(utf8(state->selectedSessionId()), "b");
}

TEST_F(Selection, MayBeToldOfTheModelsOwnText) {
    state->toggleSelection("a");
    state->toggleSelection(*state->selectedSessionId());
    EXPECT_EQ(state->selectedSessionId(), std::nullopt);
}

TEST_F(Selection, DoesNotDependOnTheListedSessions) {
    state->toggleSelection("a");
    scan({session("b")});
    EXPECT_EQ(utf8(state->selectedSessionId()), "a");
}

} // namespace
} // namespace sallowmere
