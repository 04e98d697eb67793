// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/RunningSession.h"

namespace sallowmere {
namespace {

using Jumping = RunningSession;

TEST_F(Jumping, AnyPlaceOfACompletionLeadsToItsTerminal) {
    session().finish();
    panel().waitUntilExpanded();
    panel().enter();
    const Control card = panel().atRest("Lantern notes", "push button");
    desk().user.moveTo(card.box.x + 3, card.box.bottom() - 6);
    desk().user.click();

    desk().waitForFront(assistant());
    // Looking at it settles it.
    panel().tree().waitUntilGone("Finished — click to jump");
    expectKeys("");
}

TEST_F(Jumping, TheButtonOfARowLeadsToItsTerminal) {
    panel().enter();
    panel().click("Jump to this session's terminal", "push button");

    desk().waitForFront(assistant());
    EXPECT_FALSE(panel().tree().isShown("Prompt this session…"));
    expectKeys("");
}

TEST_F(Jumping, APlanLeadsToItsTerminal) {
    session().plan("Paint it");
    panel().waitUntilExpanded();
    panel().enter();
    panel().click("Approve in the terminal — click to jump");

    desk().waitForFront(assistant());
    expectKeys("");
}

TEST_F(Jumping, TheDetailsLeadToTheTerminalAndSayWhereToPrompt) {
    panel().enter();
    panel().click("Lantern notes, working");
    panel().tree().find("Session is active in the terminal — prompt it there");
    panel().click("XTerm", "push button");

    desk().waitForFront(assistant());
    expectKeys("");
}

} // namespace
} // namespace sallowmere
