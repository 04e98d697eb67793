// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/NotchWindowController.h"

#include "Application/AppStateTest.h"
#include "Support/FakeNotchPanel.h"
#include "Support/FakeScreens.h"

#include <memory>
#include <optional>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Screen plainScreen{{0, 0, 1'600, 1'000}, {0, 0, 1'600, 976}, 0, {}, {}};
const Screen notchedScreen{{0, 0, 1'512, 982}, {0, 0, 1'512, 944}, 32, 663.5, 663.5};

constexpr Rect collapsed{680, 946, 240, 30};
/// Of the least height that an expanded panel has.
constexpr Rect expanded{468, 828, 664, 148};

class NotchWindowControllerTest : public AppStateTest {
protected:
    NotchWindowControllerTest() {
        screens.screens = {plainScreen};
        screens.mainScreen = plainScreen;
        start();
    }

    void start() {
        controller.reset();
        panel = std::make_unique<FakeNotchPanel>();
        controller = std::make_unique<NotchWindowController>(*state, *panel, screens, queue);
    }

    /// The prompt field takes the keyboard from an application.
    void typeInField(std::optional<NotchPanel::FrontApplication> from) {
        panel->key = true;
        panel->front = from;
        panel->events.becameKey();
        state->setEditingPrompt(true);
        queue.runPosted();
    }

    FakeScreens screens;
    std::unique_ptr<FakeNotchPanel> panel;
    std::unique_ptr<NotchWindowController> controller;
};

TEST_F(NotchWindowControllerTest, ShowsTheCollapsedBarAtOnce) {
    EXPECT_THAT(panel->moves, ElementsAre(FakeNotchPanel::Move{collapsed, 0}));
    EXPECT_EQ(panel->shown, 1);
    EXPECT_FALSE(panel->metrics.hasNotch);
}

TEST_F(NotchWindowControllerTest, OpensAndClosesWithinItsTime) {
    state->hoverChanged(true);
    state->hoverChanged(false);
    queue.advance(AppState::leaveTime);

    EXPECT_THAT(panel->moves, ElementsAre(FakeNotchPanel::Move{collapsed, 0},
                                          FakeNotchPanel::Move{expanded, 0.16},
                                          FakeNotchPanel::Move{collapsed, 0.16}));
}

TEST_F(NotchWindowControllerTest, GrowsWithItsContent) {
    state->hoverChanged(true);
    state->setContentHeight(121);
    EXPECT_EQ(panel->frame(), (Rect{468, 827, 664, 149}));
    state->setContentHeight(900);
    EXPECT_EQ(panel->frame(), (Rect{468, 388, 664, 588}));
    EXPECT_THAT(panel->moves, SizeIs(4));
}

TEST_F(NotchWindowControllerTest, StaysWhereItIsForTheSameValues) {
    state->hoverChanged(true);
    state->setContentHeight(100);
    const std::size_t moves = panel->moves.size();

    state->hoverChanged(true);
    state->setContentHeight(100);
    state->setContentHeight(120);

    EXPECT_THAT(panel->moves, SizeIs(moves));
}

TEST_F(NotchWindowControllerTest, TheContentOfACollapsedPanelDoesNotMoveIt) {
    state->setContentHeight(300);
    EXPECT_THAT(panel->moves, SizeIs(1));
}

TEST_F(NotchWindowControllerTest, OpensAtOnceForAModelThatIsOpenAlready) {
    state->togglePin();
    start();
    EXPECT_THAT(panel->moves, ElementsAre(FakeNotchPanel::Move{collapsed, 0},
                                          FakeNotchPanel::Move{expanded, 0.16}));
}

TEST_F(NotchWindowControllerTest, HoveringReachesTheModelLaterAndInOrder) {
    panel->events.hoverChanged(true);
    EXPECT_FALSE(state->expanded());

    queue.runPosted();
    EXPECT_TRUE(state->expanded());

    panel->events.hoverChanged(false);
    panel->events.hoverChanged(true);
    queue.runPosted();
    queue.advance(1);
    EXPECT_TRUE(state->expanded());
}

TEST_F(NotchWindowControllerTest, WhatComesAfterItHasGoneDoesNothing) {
    const NotchPanel::Events events = panel->events;
    events.hoverChanged(true);
    events.resignedKey();
    controller.reset();
    queue.runPosted();
    screens.change();

    EXPECT_FALSE(state->expanded());
    EXPECT_FALSE(panel->events.hoverChanged);
}

TEST_F(NotchWindowControllerTest, LeavingTheFieldGivesTheKeyboardBack) {
    typeInField(NotchPanel::FrontApplication{7});
    state->setEditingPrompt(false);

    EXPECT_EQ(panel->firstRespondersCleared, 1);
    EXPECT_THAT(panel->activated, ElementsAre(NotchPanel::FrontApplication{7}));
}

TEST_F(NotchWindowControllerTest, AKeyboardThatComesWhenNobodyTypesGoesBack) {
    panel->key = true;
    panel->front = NotchPanel::FrontApplication{7};
    panel->events.becameKey();
    EXPECT_THAT(panel->activated, IsEmpty());
    queue.runPosted();
    EXPECT_THAT(panel->activated, ElementsAre(NotchPanel::FrontApplication{7}));
}

TEST_F(NotchWindowControllerTest, AKeyboardThatComesBeforeTheModelIsToldStays) {
    panel->key = true;
    panel->front = NotchPanel::FrontApplication{7};
    panel->responds = true;
    panel->events.becameKey();
    queue.runPosted();
    EXPECT_THAT(panel->activated, IsEmpty());

    state->setEditingPrompt(true);
    state->setEditingPrompt(false);
    EXPECT_THAT(panel->activated, ElementsAre(NotchPanel::FrontApplication{7}));
}

TEST_F(NotchWindowControllerTest, CollapsingGivesTheKeyboardBack) {
    state->togglePin();
    typeInField(NotchPanel::FrontApplication{7});
    // The field is left in a way that the model has not been told of yet.
    state->togglePin();
    state->blockSignals(true);
    state->setEditingPrompt(false);
    state->blockSignals(false);
    state->hoverChanged(false);
    queue.advance(AppState::leaveTime);

    EXPECT_FALSE(state->expanded());
    EXPECT_THAT(panel->activated, ElementsAre(NotchPanel::FrontApplication{7}));
}

TEST_F(NotchWindowControllerTest, TheKeyboardIsGivenBackOnce) {
    state->hoverChanged(true);
    typeInField(NotchPanel::FrontApplication{7});
    state->setEditingPrompt(false);
    state->setEditingPrompt(false);
    state->hoverChanged(false);
    queue.advance(AppState::leaveTime);

    EXPECT_THAT(panel->activated, SizeIs(1));
}

TEST_F(NotchWindowControllerTest, KnowsNobodyToGiveTheKeyboardTo) {
    typeInField(std::nullopt);
    state->setEditingPrompt(false);
    EXPECT_THAT(panel->activated, ElementsAre(std::nullopt));
}

TEST_F(NotchWindowControllerTest, GivesNothingBackThatItDoesNotHave) {
    state->setEditingPrompt(true);
    state->setEditingPrompt(false);
    EXPECT_THAT(panel->activated, IsEmpty());
    EXPECT_EQ(panel->firstRespondersCleared, 0);
}

TEST_F(NotchWindowControllerTest, LosingTheKeyboardEndsTheEditing) {
    typeInField(NotchPanel::FrontApplication{7});
    panel->key = false;
    panel->events.resignedKey();
    EXPECT_TRUE(state->editingPrompt());

    queue.runPosted();
    EXPECT_FALSE(state->editingPrompt());
    EXPECT_THAT(panel->activated, IsEmpty());
}

TEST_F(NotchWindowControllerTest, AnotherDisplayMovesItAtOnce) {
    state->hoverChanged(true);
    screens.screens = {plainScreen, notchedScreen};
    screens.change();
    EXPECT_EQ(panel->frame(), expanded);

    queue.runPosted();
    EXPECT_THAT(panel->moves.back(), (FakeNotchPanel::Move{{424, 834, 664, 148}, 0}));
    EXPECT_TRUE(panel->metrics.hasNotch);
    EXPECT_EQ(controller->metrics().notchWidth, 185);
}

TEST_F(NotchWindowControllerTest, WithoutAnyDisplayItStaysWhereItIs) {
    screens.screens.clear();
    screens.mainScreen.reset();
    screens.change();
    queue.runPosted();
    EXPECT_THAT(panel->moves, SizeIs(1));
}

} // namespace
} // namespace sallowmere
