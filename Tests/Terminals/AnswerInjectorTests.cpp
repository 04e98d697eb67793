// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Terminals/AnswerInjector.h"

#include "Support/FakeDesktop.h"
#include "Support/FakeQueues.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t terminal = 7;
constexpr std::int32_t browser = 8;

class AnswerInjectorTest : public testing::Test {
protected:
    AnswerInjectorTest() {
        applications.running[terminal] = {{70, "bash"}};
        applications.running[browser] = {{80, "News"}};
        applications.keyboardOwner = browser;
    }

    bool answer(int optionNumber, std::int32_t pid = terminal) {
        return AnswerInjector::answer(optionNumber, pid, applications, keystrokes, queue);
    }

    void expectNothingHappened() {
        EXPECT_EQ(queue.scheduled(), 0U);
        EXPECT_EQ(queue.posted(), 0U);
        queue.advance(10);
        EXPECT_THAT(applications.done, IsEmpty());
        EXPECT_THAT(keystrokes.typed, IsEmpty());
        EXPECT_EQ(keystrokes.trustRequests, 0);
    }

    FakeApplications applications;
    FakeKeystrokes keystrokes;
    FakeMainQueue queue{at("2025-06-02T12:00:00Z")};
};

TEST_F(AnswerInjectorTest, TypesTheDigitOfEachOption) {
    for (int option = 1; option <= 9; ++option) {
        EXPECT_TRUE(answer(option));
        queue.advance(1);
    }
    EXPECT_THAT(keystrokes.typed, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(AnswerInjectorTest, TypesNothingForNumbersWithoutADigit) {
    for (const int option :
         {0, 10, -1, 11, 55, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(answer(option)) << option;
        expectNothingHappened();
    }
}

TEST_F(AnswerInjectorTest, DoesNothingWithoutTheRightToType) {
    keystrokes.trusted = false;
    EXPECT_FALSE(answer(1));
    expectNothingHappened();
}

TEST_F(AnswerInjectorTest, DoesNothingWhenTheTerminalHasGone) {
    applications.running.erase(terminal);
    EXPECT_FALSE(answer(1));
    expectNothingHappened();
}

TEST_F(AnswerInjectorTest, ActivatesAtOnceAndTypesFourTenthsOfASecondLater) {
    EXPECT_TRUE(answer(5));
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    EXPECT_EQ(queue.scheduled(), 1U);
    queue.advance(std::nextafter(0.4, 0));
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    queue.advance(0.001);
    EXPECT_THAT(keystrokes.typed, ElementsAre(5));
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(AnswerInjectorTest, TypesOnlyOnce) {
    answer(2);
    queue.advance(100);
    EXPECT_THAT(keystrokes.typed, ElementsAre(2));
    EXPECT_EQ(queue.scheduled(), 0U);
}

TEST_F(AnswerInjectorTest, ActivatesTheApplicationThatTheProcessBelongsTo) {
    applications.helpers[71] = terminal;
    EXPECT_TRUE(answer(3, 71));
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    queue.advance(1);
    EXPECT_THAT(keystrokes.typed, ElementsAre(3));
}

TEST_F(AnswerInjectorTest, TypesNothingWhereTheTerminalWasRefusedTheKeyboard) {
    applications.givesKeyboard = false;
    EXPECT_TRUE(answer(1));
    queue.advance(1);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
}

TEST_F(AnswerInjectorTest, TypesNothingWhenTheUserTurnedToAnotherWindowMeanwhile) {
    EXPECT_TRUE(answer(1));
    queue.advance(0.3);
    applications.keyboardOwner = browser;
    queue.advance(1);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
}

TEST_F(AnswerInjectorTest, TypesWhenTheTerminalTakesTheKeyboardLate) {
    applications.givesKeyboard = false;
    answer(4);
    queue.advance(0.3);
    applications.keyboardOwner = terminal;
    queue.advance(1);
    EXPECT_THAT(keystrokes.typed, ElementsAre(4));
}

TEST_F(AnswerInjectorTest, GivesEachOfTwoAnswersItsOwnTime) {
    answer(1);
    queue.advance(0.3);
    answer(2);
    queue.advance(0.2);
    EXPECT_THAT(keystrokes.typed, ElementsAre(1));
    queue.advance(0.2);
    EXPECT_THAT(keystrokes.typed, ElementsAre(1, 2));
}

} // namespace
} // namespace sallowmere
