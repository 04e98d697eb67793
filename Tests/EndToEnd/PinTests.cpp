// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"

namespace sallowmere {
namespace {

/// A session that nobody works on in a terminal.
class Pinning : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown();
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        desk().startPanel();
    }

    PanelWindow& panel() { return *desk().panel; }

    void choose(const std::string& entry) {
        panel().enter();
        desk().user.clickOn(panel().atRest("Lantern, " + status_).box, User::Button::right);
        panel().click(entry, "menu item");
        panel().tree().waitUntilGone(entry, "menu item");
    }

    /// Two changes, each seen by a refresh of its own: longer than the panel waits for the pointer
    /// to come back.
    void letTwoRefreshesPass() {
        session_->work();
        panel().tree().find("Lantern, working");
        session_->ask("Still there?", {"Yes"});
        panel().tree().find("Lantern, waiting");
        status_ = "waiting";
    }

private:
    std::unique_ptr<LiveSession> session_;
    std::string status_ = "done";
};

TEST_F(Pinning, KeepsThePanelOpenUntilItIsUnpinned) {
    choose("Pin open");
    desk().user.moveTo(4, Windows::screen(desk().client).height - 4);
    letTwoRefreshesPass();
    EXPECT_TRUE(panel().isExpanded());

    choose("Unpin");
    panel().leave();
    panel().enter();
    panel().leave();
}

} // namespace
} // namespace sallowmere
