// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/ActivityBeacon.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using Color = ActivityBeacon::Color;

TEST(ActivityBeacon, IsAbsentWhenThereIsNothingToSumUp) {
    EXPECT_FALSE((ActivityBeacon{0, 0, 0}).isShown());
    EXPECT_FALSE((ActivityBeacon{-1, -1, -1}).isShown());
    EXPECT_TRUE((ActivityBeacon{1, 0, 0}).isShown());
    EXPECT_TRUE((ActivityBeacon{0, 1, 0}).isShown());
    EXPECT_TRUE((ActivityBeacon{0, 0, 1}).isShown());
}

TEST(ActivityBeacon, IsCyanWhileAnythingWaits) {
    const ActivityBeacon beacon{2, 1, 5};
    EXPECT_EQ(beacon.color(), Color::cyan);
    EXPECT_EQ(beacon.toolTip(), "1 session(s) waiting for you");
}

TEST(ActivityBeacon, IsBlueWhileSessionsWork) {
    const ActivityBeacon beacon{12, 0, 3};
    EXPECT_EQ(beacon.color(), Color::blue);
    EXPECT_EQ(beacon.toolTip(), "12 session(s) working");
}

TEST(ActivityBeacon, IsGreenWhenAllHaveFinished) {
    const ActivityBeacon beacon{0, 0, 3};
    EXPECT_EQ(beacon.color(), Color::green);
    EXPECT_EQ(beacon.toolTip(), "3 session(s) finished");
}

TEST(ActivityBeacon, BreathesUntilSomethingWasCompleted) {
    EXPECT_TRUE((ActivityBeacon{2, 0, 0}).isBreathing());
    EXPECT_TRUE((ActivityBeacon{0, 1, 0}).isBreathing());
    EXPECT_FALSE((ActivityBeacon{2, 1, 1}).isBreathing());
    EXPECT_FALSE((ActivityBeacon{0, 0, 3}).isBreathing());
}

} // namespace
} // namespace sallowmere
