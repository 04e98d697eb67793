// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/DesktopTest.h"

#include "Platform/Qt/EventLoopQueue.h"
#include "Sallowmere/Terminals/AnswerInjector.h"
#include "X11/WaitFor.h"

#include <QCoreApplication>

namespace sallowmere {
namespace {

class AnswerTest : public DesktopTest {
protected:
    /// Answers a terminal and waits until the digit was sent.
    void answer(int option, const Terminal& terminal) {
        EXPECT_TRUE(desktop().answer(option, terminal));
        desktop().waitForFront(terminal);
        desktop().letDigitCome();
    }

    /// What a terminal receives for the options 1 to 9 in turn.
    std::string answered(Terminal& terminal) {
        for (int option = 1; option <= 9; ++option) {
            answer(option, terminal);
        }
        return desktop().received(terminal);
    }

    /// The same with both kinds of terminal, after whatever the test did to the keyboard.
    void expectAllDigits() {
        EXPECT_EQ(answered(desktop().addXterm("one")), "123456789");
        EXPECT_EQ(answered(desktop().addUrxvt("other")), "123456789");
    }
};

TEST_P(AnswerTest, TypesTheDigitAloneIntoThatTerminalAlone) {
    Terminal& wanted = desktop().addXterm("wanted");
    Terminal& other = desktop().addXterm("other");
    Terminal& another = desktop().addUrxvt("another");
    answer(2, wanted);
    EXPECT_EQ(desktop().received(wanted), "2");
    EXPECT_EQ(desktop().received(other), "");
    EXPECT_EQ(desktop().received(another), "");
}

TEST_P(AnswerTest, TypesIntoTheForemostWindowOfATerminalWithSeveral) {
    Terminal& behind = desktop().addUrxvt("behind");
    Terminal& foremost = desktop().addUrxvt("foremost");
    Terminal& other = desktop().addXterm("other");
    answer(7, foremost);
    EXPECT_EQ(desktop().received(foremost), "7");
    EXPECT_EQ(desktop().received(behind), "");
    EXPECT_EQ(desktop().received(other), "");
}

TEST_P(AnswerTest, TypesIntoAMinimisedTerminal) {
    Terminal& wanted = desktop().addXterm("wanted");
    Terminal& other = desktop().addXterm("other");
    desktop().client.minimise(wanted.window);
    answer(3, wanted);
    EXPECT_EQ(desktop().received(wanted), "3");
    EXPECT_EQ(desktop().received(other), "");
}

TEST_P(AnswerTest, TypesIntoATerminalOnAnotherDesktop) {
    Terminal& wanted = desktop().addXterm("wanted");
    Terminal& other = desktop().addXterm("other");
    desktop().client.moveToDesktop(wanted.window, 1);
    answer(3, wanted);
    EXPECT_EQ(desktop().received(wanted), "3");
    desktop().client.showDesktop(0);
    desktop().client.activate(other.window);
    EXPECT_EQ(desktop().received(other), "");
}

TEST_P(AnswerTest, TypesWhenTheTimeHasComeInAnEventLoop) {
    int argumentCount = 0;
    QCoreApplication application(argumentCount, nullptr);
    EventLoopQueue queue;
    Terminal& wanted = desktop().addXterm("wanted");
    Terminal& other = desktop().addXterm("other");
    EXPECT_TRUE(AnswerInjector::answer(4, wanted.owner, desktop().applications,
                                       desktop().keystrokes, queue));
    waitFor("the digit", [&] {
        QCoreApplication::processEvents();
        return desktop().terminals.hasMore();
    });
    desktop().waitUntilTyped();
    EXPECT_EQ(desktop().received(wanted), "4");
    EXPECT_EQ(desktop().received(other), "");
}

TEST_P(AnswerTest, TypesEveryDigitInLayoutsWithDigitsInFront) {
    expectAllDigits();
    desktop().server.setLayout("de");
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitInLayoutsWithDigitsBehindShift) {
    desktop().server.setLayout("fr");
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitInLayoutsWithDigitsOnTheThirdLevel) {
    desktop().server.setLayout("lt");
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitInLayoutsWithDigitsOnTheFourthLevel) {
    desktop().server.setLayout("ir");
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitWithTheSecondGroupLocked) {
    desktop().server.setLayout("us,fr", "grp:sclk_toggle");
    desktop().client.tap(Key::scrollLock);
    expectAllDigits();
    desktop().client.tap(Key::scrollLock);
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitWithCapsLockOn) {
    desktop().client.tap(Key::capsLock);
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitWithCapsLockOnBehindShift) {
    desktop().server.setLayout("fr");
    desktop().client.tap(Key::capsLock);
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitWhereCapsLockShiftsThem) {
    desktop().server.setLayout("fr", "caps:shiftlock");
    desktop().client.tap(Key::capsLock);
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitWithNumLockOn) {
    desktop().client.tap(Key::numLock);
    expectAllDigits();
}

TEST_P(AnswerTest, TypesEveryDigitOnTheKeypadOfALayoutWithDigitsOfItsOwn) {
    desktop().server.setLayout("th");
    desktop().client.tap(Key::numLock);
    expectAllDigits();
}

TEST_P(AnswerTest, NeedsNoFurtherShiftWhereTheUserHoldsIt) {
    desktop().server.setLayout("fr");
    Terminal& wanted = desktop().addXterm("wanted");
    desktop().client.press(Key::shift);
    answer(5, wanted);
    desktop().client.release(Key::shift);
    EXPECT_EQ(desktop().received(wanted), "5");
}

TEST_P(AnswerTest, FollowsTheLayoutWhenTheUserChangesIt) {
    Terminal& wanted = desktop().addXterm("wanted");
    answer(1, wanted);
    // A terminal translates keys when it comes to them, in the layout of that moment.
    EXPECT_EQ(desktop().received(wanted), "1");
    desktop().server.setLayout("fr");
    answer(2, wanted);
    EXPECT_EQ(desktop().received(wanted), "12");
    desktop().server.setLayout("de");
    answer(3, wanted);
    EXPECT_EQ(desktop().received(wanted), "123");
}

} // namespace

ON_EACH_WINDOW_MANAGER(AnswerTest);

} // namespace sallowmere
