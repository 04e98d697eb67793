// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/WindowManagerTest.h"

namespace sallowmere {
namespace {

using Focus = WindowManagerTest;

TEST_P(Focus, NeitherPointerNorClickTakesTheKeyboard) {
    panel().enter();
    EXPECT_TRUE(client().hasFocus(terminal().window));

    panel().click("Lantern, done");
    panel().tree().find("Prompt this session…", "text");
    panel().waitForRest();
    EXPECT_TRUE(panel().isExpanded());
    desk().user.type("a");
    EXPECT_EQ(desk().awaitKey(terminal()), "a");

    panel().leave();
    EXPECT_TRUE(client().hasFocus(terminal().window));
    EXPECT_EQ(desk().received(terminal()), "a");
}

TEST_P(Focus, TheFieldHasTheKeyboardFromAClickUntilEscape) {
    panel().enter();
    startTyping();
    desk().user.type("fix it");
    waitForText("fix it");

    desk().user.tap(Keys::escape);
    waitForKeyboardBack();
    panel().leave();
    EXPECT_EQ(client().activeWindow(), terminal().window);
    EXPECT_EQ(desk().received(terminal()), "");
}

TEST_P(Focus, ATouchOfTheFieldIsEnough) {
    panel().enter();
    desk().user.moveInto(openDetails().box);
    desk().user.touch();
    waitForField();
    desk().user.type("fix it");
    waitForText("fix it");
}

TEST_P(Focus, TheFieldHasTheKeyboardOverAFullScreenToo) {
    client().makeFullScreen(terminal().window);
    panel().enter();
    startTyping();
    desk().user.type("fix it");
    waitForText("fix it");

    desk().user.tap(Keys::escape);
    waitForKeyboardBack();
    EXPECT_TRUE(client().isFullScreen(terminal().window));
    EXPECT_EQ(desk().received(terminal()), "");
}

UNDER_EACH_WINDOW_MANAGER(Focus);

} // namespace
} // namespace sallowmere
