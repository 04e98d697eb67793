// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/PromptingTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

using Prompting = PromptingTest;

TEST_F(Prompting, KeysComeIntoTheFieldOnlyAfterAClickInIt) {
    openDetails();
    desk().user.type("a");
    EXPECT_EQ(desk().awaitKey(other()), "a");
    EXPECT_EQ(AccessibleTree::text(field()), "");

    clickField();
    desk().user.type("fix it");
    waitForText("fix it");

    desk().user.tap(Keys::escape);
    waitFor("the keyboard to come back", [&] { return desk().client.hasFocus(other().window); });
    EXPECT_EQ(desk().received(other()), "a");
    EXPECT_EQ(AccessibleTree::text(field()), "fix it");
}

TEST_F(Prompting, AClickElsewhereTakesTheKeyboard) {
    openDetails();
    clickField();
    desk().user.type("fix it");
    waitForText("fix it");
    const Box terminal = Windows::geometry(desk().client, other().window);
    desk().user.moveTo(terminal.x + 20, terminal.bottom() - 20);
    desk().user.click();
    waitFor("the keyboard to come back", [&] { return desk().client.hasFocus(other().window); });
    EXPECT_EQ(desk().received(other()), "");
    // Nobody types into the panel any more, so that it closes as usual.
    panel().enter();
    panel().leave();
    EXPECT_TRUE(desk().client.hasFocus(other().window));
}

TEST_F(Prompting, TheKeyboardIsNotKeptWhenNobodyIsThereToHaveIt) {
    openDetails();
    clickField();
    const Terminal& gone = other();
    Terminals::close(other());
    waitFor("the terminal to close", [&] { return !desk().client.isManaged(gone.window); });
    desk().user.tap(Keys::escape);
    waitFor("the keyboard to leave the panel",
            [&] { return !desk().client.hasFocus(panel().window()); });
}

TEST_F(Prompting, AnErrorShowsUntilARunSucceeds) {
    assistantDoes("echo 'The lantern is out' >&2; exit 3");
    openDetails();
    clickField();
    desk().user.type("light it");
    desk().user.tap(Keys::enter);
    panel().tree().find("The lantern is out");
    EXPECT_THAT(assistantCalls(),
                testing::ElementsAre("-p --resume " + session().id()
                                     + " --fork-session --permission-mode acceptEdits --"
                                       " light it"));
    EXPECT_EQ(AccessibleTree::text(field()), "");

    assistantDoes("exit 0");
    clickField();
    desk().user.type("again");
    desk().user.tap(Keys::enter);
    panel().tree().waitUntilGone("The lantern is out");
    waitFor("the second run", [&] { return assistantCalls().size() == 2; });
    EXPECT_EQ(desk().received(other()), "");
}

TEST_F(Prompting, TheAssistantGetsTheUsersVariablesForQtAndNoOthers) {
    assistantDoes("{ env | grep ^QT | sort; echo end; } >> \"${0%/*}/calls\"");
    openDetails();
    clickField();
    desk().user.type("light it");
    desk().user.tap(Keys::enter);
    waitFor("the run", [&] {
        const std::vector<std::string> lines = assistantCalls();
        return !lines.empty() && lines.back() == "end";
    });
    EXPECT_THAT(assistantCalls(),
                testing::ElementsAre(testing::_, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
                                     "QT_QPA_PLATFORM=xcb", "end"));
}

TEST_F(Prompting, ARunIsSaidToBeUnderWayUntilItEnds) {
    const std::string gate = desk().home.directory().makeFifo("gate");
    assistantDoes("cat '" + gate + "'");
    openDetails();
    clickField();
    desk().user.type("wait");
    panel().click("Send", "push button");
    // The run is an assistant in the session's directory, so that the session is active for as
    // long.
    panel().tree().find("Session is active in the terminal — prompt it there");
    desk().home.directory().write("gate", "go");
    panel().tree().find("Prompt this session…", "text");
}

TEST_F(Prompting, RefreshesLeaveAHalfTypedPromptAlone) {
    openDetails();
    clickField();
    desk().user.type("half");
    waitForText("half");
    // Another session comes to be first in the list, so that rows move.
    LiveSession rival = desk().home.addSession("rival", "Rival");
    for (int turn = 1; turn <= 4; ++turn) {
        rival.work("turn " + std::to_string(turn));
        const auto shows = [&] {
            return panel().tree().isShown("You: turn " + std::to_string(turn));
        };
        waitFor("a refresh", shows);
        EXPECT_TRUE(AccessibleTree::isFocused(field()));
        EXPECT_EQ(AccessibleTree::text(field()), "half");
    }
    desk().user.type(" done");
    waitForText("half done");
}

TEST_F(Prompting, RefreshesLeaveAnOpenMenuAlone) {
    openDetails();
    desk().user.clickOn(panel().atRest("Lantern, done").box, User::Button::right);
    const Box menu = panel().atRest("Pin open", "menu item").box;
    LiveSession rival = desk().home.addSession("rival", "Rival");
    for (int turn = 1; turn <= 3; ++turn) {
        rival.work("turn " + std::to_string(turn));
        panel().tree().find("You: turn " + std::to_string(turn));
        EXPECT_EQ(panel().tree().find("Pin open", "menu item").box, menu);
    }
    desk().user.clickOn(menu);
    panel().tree().waitUntilGone("Pin open", "menu item");
}

} // namespace
} // namespace sallowmere
