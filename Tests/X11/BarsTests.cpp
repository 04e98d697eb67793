// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/Bars.h"

#include "X11/DesktopTest.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr PixelArea desktop{0, 0, 2'400, 1'000};
constexpr PixelArea leftScreen{0, 0, 1'600, 1'000};
constexpr PixelArea rightScreen{1'600, 200, 2'400, 800};

PixelArea rest(const Bar& bar, const PixelArea& screen) {
    return without({bar}, screen, desktop);
}

TEST(BarsTest, EachEdgeIsMovedIn) {
    EXPECT_EQ(rest({1, Bar::Edge::top, 24, 0, 1'599}, leftScreen),
              (PixelArea{0, 24, 1'600, 1'000}));
    EXPECT_EQ(rest({1, Bar::Edge::bottom, 40, 0, 1'599}, leftScreen),
              (PixelArea{0, 0, 1'600, 960}));
    EXPECT_EQ(rest({1, Bar::Edge::left, 50, 0, 999}, leftScreen), (PixelArea{50, 0, 1'600, 1'000}));
    EXPECT_EQ(rest({1, Bar::Edge::right, 60, 200, 799}, rightScreen),
              (PixelArea{1'600, 200, 2'340, 800}));
}

TEST(BarsTest, CountsOnTheScreensThatItReachesInto) {
    const Bar top{1, Bar::Edge::top, 24, 0, 1'599};
    EXPECT_EQ(rest(top, rightScreen), rightScreen);
    // From the edge of the desktop, 200 pixels of which are above this screen.
    EXPECT_EQ(rest({1, Bar::Edge::top, 224, 1'600, 2'399}, rightScreen),
              (PixelArea{1'600, 224, 2'400, 800}));
    EXPECT_EQ(rest({1, Bar::Edge::top, 24, 1'600, 2'399}, rightScreen), rightScreen);
    EXPECT_EQ(rest({1, Bar::Edge::right, 60, 200, 799}, leftScreen), leftScreen);
}

TEST(BarsTest, TheEndsOfABarBelongToIt) {
    EXPECT_EQ(rest({1, Bar::Edge::top, 24, 1'599, 1'700}, leftScreen).top, 24);
    EXPECT_EQ(rest({1, Bar::Edge::top, 24, 1'600, 1'700}, leftScreen).top, 0);
}

TEST(BarsTest, TheLargerOfTwoCounts) {
    const std::vector<Bar> two{{1, Bar::Edge::top, 24, 0, 2'399}, {2, Bar::Edge::top, 40, 0, 9}};
    EXPECT_EQ(without(two, leftScreen, desktop).top, 40);
}

TEST(BarsTest, OneThatLeavesNothingDoesNotCount) {
    EXPECT_EQ(rest({1, Bar::Edge::top, 30'000, 0, 2'399}, rightScreen), rightScreen);
    EXPECT_EQ(rest({1, Bar::Edge::left, 30'000, 0, 999}, leftScreen), leftScreen);
    EXPECT_EQ(rest({1, Bar::Edge::right, 30'000, 0, 999}, rightScreen), rightScreen);
    EXPECT_EQ(rest({1, Bar::Edge::bottom, 30'000, 0, 2'399}, leftScreen), leftScreen);
}

TEST(BarsTest, OneOfALowerScreenIsNoneOfTheUpper) {
    constexpr PixelArea both{0, 0, 1'920, 2'160};
    const Bar bar{1, Bar::Edge::top, 1'110, 0, 1'919};
    constexpr PixelArea upper{0, 0, 1'920, 1'080};
    constexpr PixelArea lower{0, 1'080, 1'920, 2'160};
    EXPECT_EQ(without({bar}, upper, both), upper);
    EXPECT_EQ(without({bar}, lower, both), (PixelArea{0, 1'110, 1'920, 2'160}));
}

class BarWindowsTest : public DesktopTest {
protected:
    xcb_window_t showBar(xcb_ewmh_wm_strut_partial_t strut) {
        XClient& client = desktop().client;
        const xcb_window_t bar = client.createWindow();
        xcb_atom_t dock = client.ewmh()->_NET_WM_WINDOW_TYPE_DOCK;
        xcb_ewmh_set_wm_window_type(client.ewmh(), bar, 1, &dock);
        xcb_ewmh_set_wm_strut_partial(client.ewmh(), bar, strut);
        client.show(bar);
        return bar;
    }
};

TEST_P(BarWindowsTest, AreFoundWithWhatTheyKeep) {
    xcb_ewmh_wm_strut_partial_t strut{};
    strut.top = 24;
    strut.top_end_x = 1'279;
    const xcb_window_t bar = showBar(strut);

    EXPECT_THAT(bars(desktop().connection), ElementsAre(Bar{bar, Bar::Edge::top, 24, 0, 1'279}));

    desktop().client.close(bar);
    EXPECT_THAT(bars(desktop().connection), IsEmpty());
}

TEST_P(BarWindowsTest, AbsurdNumbersStayNumbers) {
    xcb_ewmh_wm_strut_partial_t strut{};
    strut.top = 0xFFFF'FFFF;
    strut.top_end_x = 0xFFFF'FFFF;
    const xcb_window_t bar = showBar(strut);

    EXPECT_THAT(bars(desktop().connection),
                ElementsAre(Bar{bar, Bar::Edge::top, 32'767, 0, 32'767}));
}

TEST_P(BarWindowsTest, OtherWindowsKeepNothing) {
    XClient& client = desktop().client;
    client.show(client.createWindow());
    EXPECT_THAT(bars(desktop().connection), IsEmpty());
}

ON_EACH_WINDOW_MANAGER(BarWindowsTest);

} // namespace
} // namespace sallowmere
