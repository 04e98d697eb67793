// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/DesktopTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

using JumpTest = DesktopTest;

const std::string webShop = "/home/u/projects/WebShop";

TEST_P(JumpTest, BringsTheTerminalToTheFrontWithTheKeyboard) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    EXPECT_TRUE(desktop().jump(wanted));
    desktop().waitForFront(wanted);
}

TEST_P(JumpTest, RaisesTheWindowWhoseTitleHoldsTheFolder) {
    desktop().addUrxvt("u@host: ~/first");
    const Terminal& wanted = desktop().addUrxvt("u@host: ~/projects/webshop");
    desktop().addUrxvt("u@host: ~/last");
    EXPECT_TRUE(desktop().jump(wanted, webShop));
    desktop().waitForFront(wanted);
}

TEST_P(JumpTest, RaisesTheWindowWhoseTitleHoldsTheWholePath) {
    const Terminal& wanted = desktop().addUrxvt("less " + webShop + "/notes.txt");
    desktop().addUrxvt("less /home/u/projects/notes.txt");
    EXPECT_TRUE(desktop().jump(wanted, webShop));
    desktop().waitForFront(wanted);
}

TEST_P(JumpTest, RaisesTheForemostOfTwoWindowsThatMatch) {
    const Terminal& behind = desktop().addUrxvt("WebShop, behind");
    const Terminal& before = desktop().addUrxvt("WebShop, before");
    desktop().addUrxvt("something else");
    EXPECT_TRUE(desktop().jump(behind, webShop));
    desktop().waitForFront(before);
    desktop().client.activate(behind.window);
    desktop().addUrxvt("one more");
    EXPECT_TRUE(desktop().jump(before, webShop));
    desktop().waitForFront(behind);
}

TEST_P(JumpTest, KeepsToTheForemostWindowWhenNoTitleMatches) {
    desktop().addUrxvt("first");
    const Terminal& foremost = desktop().addUrxvt("second");
    desktop().addXterm("WebShop");
    EXPECT_TRUE(desktop().jump(foremost, webShop));
    desktop().waitForFront(foremost);
}

TEST_P(JumpTest, ReadsTitlesAsTheyAreAtThatMoment) {
    const Terminal& wanted = desktop().addUrxvt("before");
    desktop().addUrxvt("other");
    desktop().client.setTitle(wanted.window, "~/projects/WEBSHOP");
    EXPECT_TRUE(desktop().jump(wanted, webShop));
    desktop().waitForFront(wanted);
}

TEST_P(JumpTest, BringsBackAMinimisedWindow) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    desktop().client.minimise(wanted.window);
    EXPECT_TRUE(desktop().jump(wanted));
    desktop().waitForFront(wanted);
    EXPECT_FALSE(desktop().client.isMinimised(wanted.window));
}

TEST_P(JumpTest, BringsBackAMinimisedWindowWhoseTitleMatches) {
    const Terminal& wanted = desktop().addUrxvt("WebShop");
    desktop().addUrxvt("other");
    desktop().client.minimise(wanted.window);
    EXPECT_TRUE(desktop().jump(wanted, webShop));
    desktop().waitForFront(wanted);
    EXPECT_FALSE(desktop().client.isMinimised(wanted.window));
}

TEST_P(JumpTest, PrefersAWindowThatIsShownToAMinimisedOne) {
    const Terminal& shown = desktop().addUrxvt("shown");
    const Terminal& minimised = desktop().addUrxvt("minimised");
    desktop().client.minimise(minimised.window);
    desktop().addXterm("other");
    EXPECT_TRUE(desktop().jump(shown));
    desktop().waitForFront(shown);
    EXPECT_TRUE(desktop().client.isMinimised(minimised.window));
}

TEST_P(JumpTest, PrefersAWindowOnThisDesktopToOneElsewhere) {
    const Terminal& here = desktop().addUrxvt("here");
    const Terminal& elsewhere = desktop().addUrxvt("elsewhere");
    desktop().client.moveToDesktop(elsewhere.window, 1);
    desktop().addXterm("other");
    EXPECT_TRUE(desktop().jump(here));
    desktop().waitForFront(here);
    EXPECT_EQ(desktop().client.desktopOf(elsewhere.window), 1U);
    EXPECT_EQ(desktop().client.desktop(), 0U);
}

TEST_P(JumpTest, ReachesAWindowOnAnotherDesktop) {
    const Terminal& wanted = desktop().addXterm("wanted");
    desktop().addXterm("other");
    desktop().client.moveToDesktop(wanted.window, 2);
    EXPECT_TRUE(desktop().jump(wanted));
    desktop().waitForFront(wanted);
    EXPECT_EQ(desktop().client.desktopOf(wanted.window), desktop().client.desktop());
}

TEST_P(JumpTest, FindsTheTerminalAboveTheProcessThatHostsTheSession) {
    Terminal& terminal = desktop().addXterm("wanted");
    desktop().addXterm("other");
    const auto application = desktop().applications.ofProcess(terminal.inside);
    EXPECT_EQ(application, RunningApplication{terminal.owner});
    terminal.owner = terminal.inside;
    EXPECT_TRUE(desktop().jump(terminal));
    desktop().waitForFront(terminal);
}

TEST_P(JumpTest, LeavesEverythingAsItIsWhenTheTerminalHasClosed) {
    Terminal& closed = desktop().addXterm("closed");
    const Terminal& front = desktop().addXterm("front");
    desktop().close(closed);
    EXPECT_FALSE(desktop().jump(closed));
    desktop().waitUntilTyped();
    EXPECT_TRUE(desktop().client.hasFocus(front.window));
}

} // namespace

ON_EACH_WINDOW_MANAGER(JumpTest);

} // namespace sallowmere
