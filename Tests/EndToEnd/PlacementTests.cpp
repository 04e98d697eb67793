// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/WindowHistory.h"
#include "EndToEnd/WindowManagerTest.h"

#include "X11/WaitFor.h"

#include <algorithm>
#include <cstdlib>

namespace sallowmere {
namespace {

using Placement = WindowManagerTest;

TEST_P(Placement, TheBarHangsAtTheTopAndIsNobodysWindow) {
    client().settle();
    EXPECT_EQ(panel().box(), barPlace());
    EXPECT_TRUE(Windows::isUnmanaged(client(), panel().window()));
    EXPECT_EQ(client().parentOf(panel().window()), client().root());
    EXPECT_FALSE(client().isManaged(panel().window()));
    EXPECT_EQ(Windows::number(client(), panel().window(), "_NET_WM_WINDOW_TYPE"),
              client().atom("_NET_WM_WINDOW_TYPE_NOTIFICATION"));
    EXPECT_TRUE(client().hasFocus(terminal().window));
}

TEST_P(Placement, ItGrowsDownwardsInTheMiddleAndComesBack) {
    WindowHistory history(desk().server.display(), panel().window());
    for (int cycle = 0; cycle < 3; ++cycle) {
        panel().enter();
        panel().leave();
    }
    EXPECT_EQ(panel().box(), barPlace());
    const int middle = Windows::screen(client()).width / 2;
    const std::vector<Box> boxes = history.read();
    for (const Box& box : boxes) {
        EXPECT_EQ(box.y, 0) << box;
        EXPECT_LE(std::abs(box.x + box.width / 2 - middle), 1) << box;
    }
    // It does not jump.
    EXPECT_TRUE(std::any_of(boxes.begin(), boxes.end(), [&](const Box& box) {
        return box.width > barPlace().width && box.width < PanelWindow::expandedWidth;
    }));
}

TEST_P(Placement, ItStaysAboveWhatComesAndGoes) {
    const auto isAbove = [&](const Terminal& other) {
        return Windows::isAbove(client(), panel().window(), other.window);
    };
    EXPECT_TRUE(isAbove(terminal()));
    const Terminal& later = desk().addOther("later");
    waitFor("the bar above a later window", [&] { return isAbove(later); });

    client().makeFullScreen(later.window);
    waitFor("the bar above a full screen", [&] { return isAbove(later); });
    panel().enter();
    EXPECT_TRUE(isAbove(later));
    EXPECT_TRUE(client().hasFocus(later.window));
    panel().leave();
}

TEST_P(Placement, ItIsOnEveryWorkspace) {
    desk().manager->showEmptyWorkspace(desk().server, client());
    client().settle();
    EXPECT_TRUE(Windows::isViewable(client(), panel().window()));
    EXPECT_EQ(panel().box(), barPlace());
    panel().enter();
    panel().leave();
}

UNDER_EACH_WINDOW_MANAGER(Placement);

} // namespace
} // namespace sallowmere
