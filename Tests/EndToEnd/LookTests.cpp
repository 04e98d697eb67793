// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Display.h"
#include "EndToEnd/EndToEndTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

constexpr std::uint32_t yellow = 0xFFFF00;
constexpr std::uint32_t black = 0x000000;

/// What of the panel is seen, and how large.
class Look : public EndToEndTest {
protected:
    PanelWindow& panel() { return *desk().panel; }

    void waitForPixel(int x, int y, std::uint32_t color) {
        waitFor("a colour at " + std::to_string(x) + ',' + std::to_string(y),
                [&] { return Windows::pixel(desk().client, x, y) == color; });
    }
};

TEST_F(Look, WithoutACompositorTheCornersAreCutOut) {
    sitDown(WindowManager::Kind::openbox);
    Display(desk().client).paintGround(yellow);
    desk().startPanel();
    waitFor("the bar to be cut",
            [&] { return Windows::isShaped(desk().client, panel().window()); });
    const Box bar = panel().box();
    waitForPixel(bar.x, bar.bottom() - 1, yellow);
    waitForPixel(bar.right() - 1, bar.bottom() - 1, yellow);
    waitForPixel(bar.x, bar.y, black);

    panel().enter();
    const Box window = Windows::geometry(desk().client, panel().window());
    // The shadow's margins are not there either.
    const Box list{window.x + 22, window.y, window.width - 44, window.height - 28};
    waitFor("the shape of the list", [&] { return panel().box() == list; });
    waitForPixel(list.x, list.bottom() - 1, yellow);
    waitForPixel(list.x - 1, list.y + 40, yellow);
    waitForPixel(list.x + 40, list.bottom() - 2, black);
}

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
