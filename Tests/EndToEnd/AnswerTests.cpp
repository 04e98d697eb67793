// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/RunningSession.h"

#include <filesystem>

namespace sallowmere {
namespace {

using Answering = RunningSession;

TEST_F(Answering, QuestionIsAnsweredInItsTerminalByAClick) {
    session().ask("Which colour?", {"Amber", "Moss", "Slate"});
    panel().waitUntilExpanded();
    panel().enter();
    panel().click("Moss", "push button");

    EXPECT_EQ(desk().awaitKey(assistant()), "2");
    desk().waitForFront(assistant());
    session().takeAnswer();
    panel().tree().waitUntilGone("Which colour?");
    expectKeys("2");
}

TEST_F(Answering, QuestionThatNobodyLooksAtLetsThePanelCloseAgain) {
    session().ask("Which colour?", {"Amber", "Moss", "Slate"});
    panel().waitUntilExpanded();
    panel().waitUntilCollapsed();
    EXPECT_TRUE(desk().client.hasFocus(other().window));
    expectKeys("");
}

TEST_F(Answering, QuestionIsAnsweredByAnAssistiveProgram) {
    session().ask("Which colour?", {"Amber", "Moss", "Slate"});
    // Only so that it stays open.
    panel().enter();
    AccessibleTree::act(panel().tree().find("Slate", "push button"));

    EXPECT_EQ(desk().awaitKey(assistant()), "3");
    desk().waitForFront(assistant());
    expectKeys("3");
}

TEST_F(Answering, PermissionIsGivenInTheTerminal) {
    const std::string file = desk().home.requestPermission(session(), "Run the tests?");
    panel().waitUntilExpanded();
    panel().enter();
    panel().tree().find("Run the tests?");
    panel().click("Allow", "push button");

    EXPECT_EQ(desk().awaitKey(assistant()), "1");
    desk().waitForFront(assistant());
    panel().tree().waitUntilGone("Run the tests?");
    EXPECT_FALSE(std::filesystem::exists(file));
    expectKeys("1");
}

TEST_F(Answering, PermissionThatIsDismissedIsNeitherGivenNorRefused) {
    const std::string file = desk().home.requestPermission(session(), "Run the tests?");
    panel().waitUntilExpanded();
    panel().enter();
    panel().click("Dismiss", "push button");

    panel().tree().waitUntilGone("Run the tests?");
    EXPECT_FALSE(std::filesystem::exists(file));
    // What it would type comes before what a later answer does.
    session().ask("Which colour?", {"Amber", "Moss"});
    panel().click("Amber", "push button");
    EXPECT_EQ(desk().awaitKey(assistant()), "1");
    expectKeys("1");
}

} // namespace
} // namespace sallowmere
