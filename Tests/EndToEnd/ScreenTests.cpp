// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Display.h"
#include "EndToEnd/WindowManagerTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

class Screens : public WindowManagerTest {
protected:
    void waitForBarAt(const Box& place) {
        waitFor("the panel to be moved", [&] { return panel().box() == place; });
    }

    /// As wide as it always is, in the middle of a part of the screen.
    static Box barIn(int x, int width, int y = 0) { return {x + (width - 240) / 2, y, 240, 30}; }
};

TEST_P(Screens, ThePanelFollowsAnotherMode) {
    Display display(client());
    display.resize(800, 600);
    waitForBarAt(barIn(0, 800));
    panel().enter();
    panel().leave();
    waitForBarAt(barIn(0, 800));
}

TEST_P(Screens, ThePanelHangsBelowABarThatComesAndGoes) {
    Display display(client());
    const xcb_window_t bar = display.showBar(24);
    waitForBarAt(barIn(0, 1'024, 24));
    panel().enter();
    EXPECT_EQ(Windows::geometry(client(), panel().window()).y, 24);
    panel().leave();
    display.removeBar(bar);
    waitForBarAt(barIn(0, 1'024));
}

UNDER_EACH_WINDOW_MANAGER(Screens);

/// Without a window manager's part in it.
class Monitors : public EndToEndTest {
protected:
    void SetUp() override {
        requirePrograms({"/usr/bin/xrandr"});
        sitDown();
    }

    Display display() { return Display(desk().client); }

    void waitForBarAt(const Box& place) {
        waitFor("the panel to be moved", [&] { return desk().panel->box() == place; });
    }
};

TEST_F(Monitors, ThePanelStartsBelowABarThatIsThere) {
    display().showBar(24);
    desk().startPanel();
    waitForBarAt({392, 24, 240, 30});
}

TEST_F(Monitors, ThePanelHangsFromTheMainOneOfTwo) {
    desk().startPanel();
    // The one output can be part of one monitor only.
    desk().server.run({"/usr/bin/xrandr", "--setmonitor", "left", "424/100x768/200+0+0", "none"});
    desk().server.run(
        {"/usr/bin/xrandr", "--setmonitor", "*right", "600/150x768/200+424+0", "screen"});
    waitForBarAt({424 + (600 - 240) / 2, 0, 240, 30});
    desk().server.run({"/usr/bin/xrandr", "--delmonitor", "left"});
    desk().server.run({"/usr/bin/xrandr", "--delmonitor", "right"});
    waitForBarAt({392, 0, 240, 30});
}

} // namespace
} // namespace sallowmere
