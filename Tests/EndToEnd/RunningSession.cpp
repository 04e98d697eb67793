// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/RunningSession.h"

#include "X11/WaitFor.h"

namespace sallowmere {

void RunningSession::SetUp() {
    sitDown();
    session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern notes"));
    session_->work("Pick a colour");
    assistant_ = &desk().addAssistant(*session_);
    other_ = &desk().addOther();
    desk().startPanel();
    panel().enter();
    panel().tree().find("Lantern notes, working");
    const std::string running = "claude running · pid " + std::to_string(assistant().inside);
    waitFor(running, [&] { return panel().tree().isDescribed(running); });
    panel().leave();
}

void RunningSession::expectKeys(const std::string& keys) {
    desk().client.activate(assistant().window);
    EXPECT_EQ(desk().received(assistant()), keys);
    desk().client.activate(other().window);
    EXPECT_EQ(desk().received(other()), "");
}

} // namespace sallowmere
