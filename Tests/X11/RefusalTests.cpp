// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/DesktopTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

/// Nothing is typed anywhere.
class RefusalTest : public DesktopTest {
protected:
    /// Answers while the user holds a key.
    void answerHolding(std::uint8_t key) {
        Terminal& wanted = desktop().addXterm("wanted");
        EXPECT_TRUE(desktop().answer(1, wanted));
        desktop().client.press(key);
        desktop().letDigitCome();
        desktop().client.release(key);
        EXPECT_TRUE(desktop().nothingReceived());
    }
};

TEST_P(RefusalTest, WhenTheTerminalClosesMeanwhile) {
    Terminal& wanted = desktop().addXterm("wanted");
    const Terminal& other = desktop().addXterm("other");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().waitForFront(wanted);
    desktop().close(wanted);
    waitFor("the other terminal to take over",
            [&] { return desktop().client.hasFocus(other.window); });
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenTheTerminalClosedBefore) {
    Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    desktop().close(wanted);
    EXPECT_FALSE(desktop().answer(1, wanted));
    EXPECT_EQ(desktop().queue.scheduled(), 0U);
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenAnotherWindowTakesTheKeyboardMeanwhile) {
    const Terminal& wanted = desktop().addXterm("wanted");
    const Terminal& other = desktop().addUrxvt("other");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().waitForFront(wanted);
    desktop().client.activate(other.window);
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenANewWindowComesUpMeanwhile) {
    const Terminal& wanted = desktop().addXterm("wanted");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().addUrxvt("new");
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenTheWindowManagerGivesTheTerminalNoKeyboard) {
    const Terminal& wanted = desktop().addXterm("wanted");
    const Terminal& other = desktop().addXterm("other");
    desktop().manager->stop();
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().client.hasFocus(other.window));
    desktop().manager->goOn();
    // It does now what it was asked before.
    desktop().waitForFront(wanted);
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenTheWindowManagerEndsMeanwhile) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().waitForFront(wanted);
    desktop().manager->kill();
    waitFor("the window manager's end", [&] { return !desktop().connection.hasWindowManager(); });
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenAProgramHasTakenTheWholeKeyboard) {
    const Terminal& wanted = desktop().addXterm("wanted");
    EXPECT_TRUE(desktop().answer(1, wanted));
    ASSERT_TRUE(desktop().client.grabKeyboard());
    desktop().letDigitCome();
    EXPECT_EQ(desktop().client.keysReceived(), 0);
    desktop().client.tap(Key::space);
    EXPECT_EQ(desktop().client.keysReceived(), 1) << "the grab did not last";
    desktop().client.ungrabKeyboard();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenAWindowBesideTheWindowManagerHasTheKeyboard) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    const xcb_window_t panel = desktop().client.showUnmanaged();
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().waitForFront(wanted);
    desktop().client.setFocus(panel);
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhenNothingHasTheKeyboard) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().waitForFront(wanted);
    // Or it would give the keyboard back at once.
    desktop().manager->stop();
    desktop().client.setFocus(XCB_NONE);
    desktop().letDigitCome();
    desktop().manager->goOn();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, WhileControlIsHeld) {
    answerHolding(Key::control);
}

TEST_P(RefusalTest, WhileAltIsHeld) {
    answerHolding(Key::alt);
}

TEST_P(RefusalTest, WhileSuperIsHeld) {
    answerHolding(Key::super);
}

TEST_P(RefusalTest, WhileShiftIsHeldInALayoutWithDigitsInFront) {
    answerHolding(Key::shift);
}

TEST_P(RefusalTest, WhenTheLayoutHasNoSuchDigits) {
    desktop().server.setLayout("th");
    const Terminal& wanted = desktop().addXterm("wanted");
    EXPECT_TRUE(desktop().answer(1, wanted));
    desktop().letDigitCome();
    EXPECT_TRUE(desktop().nothingReceived());
}

TEST_P(RefusalTest, ForWhatIsNoDigitFromOneToNine) {
    desktop().addXterm("wanted");
    for (const int digit : {0, -1, 10, 42}) {
        desktop().keystrokes.typeDigit(digit);
    }
    desktop().waitUntilTyped();
    EXPECT_TRUE(desktop().nothingReceived());
}

} // namespace

ON_EACH_WINDOW_MANAGER(RefusalTest);

} // namespace sallowmere
