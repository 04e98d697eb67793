// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Display.h"
#include "EndToEnd/EndToEndTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

/// What of the panel is seen, and how large.
class Look : public EndToEndTest {
protected:
    PanelWindow& panel() { return *desk().panel; }
};

TEST_F(Look, WithACompositorItIsTransparentInstead) {
    sitDown(WindowManager::Kind::xfwm4);
    desk().startPanel().enter();
    EXPECT_EQ(Windows::depth(desk().client, panel().window()), 32);
    EXPECT_FALSE(Windows::isShaped(desk().client, panel().window()));
}

TEST_F(Look, ItIsTwiceAsLargeOnADisplayOfTwiceTheDensity) {
    sitDown(WindowManager::Kind::openbox, {}, {"-screen", "0", "1600x1000x24"});
    Display(desk().client).setResources("Xft.dpi:\t192\n");
    desk().startProgram();
    const Box bar{560, 0, 480, 60};
    waitFor("a large bar", [&] {
        const auto window = findPanel(desk().client, desk().program->pid());
        return window && Windows::box(desk().client, *window) == bar;
    });
    desk().user.moveTo(800, 30);
    waitFor("a large list", [&] {
        const auto window = findPanel(desk().client, desk().program->pid());
        const Box place = window ? Windows::geometry(desk().client, *window) : Box{};
        return place.width == 2 * PanelWindow::expandedWidth && place.y == 0
               && place.x == (1'600 - place.width) / 2;
    });
}

} // namespace
} // namespace sallowmere
