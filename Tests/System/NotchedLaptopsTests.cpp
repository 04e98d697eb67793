// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/NotchedLaptops.h"

#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <fstream>

namespace sallowmere {
namespace {

using NotchedLaptops::Notch;
using NotchedLaptops::notchOf;

constexpr const char* pro14 = "Apple MacBook Pro (14-inch, M1 Pro, 2021)";

TEST(NotchedLaptopsTest, KnowsTheBuiltInDisplays) {
    EXPECT_EQ(notchOf(pro14, "eDP-1", 3'024, 1'964), (Notch{370, 74}));
    EXPECT_EQ(notchOf("Apple MacBook Pro (16-inch, M2 Max, 2023)", "eDP-1", 3'456, 2'234),
              (Notch{370, 74}));
    EXPECT_EQ(notchOf("Apple MacBook Air (13-inch, M2, 2022)", "eDP-1", 2'560, 1'664),
              (Notch{370, 64}));
    EXPECT_EQ(notchOf("Apple MacBook Air (15-inch, M2, 2023)", "eDP-1", 2'880, 1'864),
              (Notch{370, 64}));
}

TEST(NotchedLaptopsTest, AModeBelowTheNotchHasNone) {
    EXPECT_EQ(notchOf(pro14, "eDP-1", 3'024, 1'890), std::nullopt);
}

TEST(NotchedLaptopsTest, AnExternalDisplayHasNone) {
    EXPECT_EQ(notchOf(pro14, "DP-1", 3'024, 1'964), std::nullopt);
    EXPECT_EQ(notchOf(pro14, "HDMI-1", 3'840, 2'160), std::nullopt);
}

TEST(NotchedLaptopsTest, OtherMachinesHaveNone) {
    EXPECT_EQ(notchOf("", "eDP-1", 3'024, 1'964), std::nullopt);
    EXPECT_EQ(notchOf("Apple MacBook Pro (13-inch, M1, 2020)", "eDP-1", 2'560, 1'600),
              std::nullopt);
    EXPECT_EQ(notchOf("Raspberry Pi 5 Model B", "eDP-1", 2'560, 1'664), std::nullopt);
}

TEST(NotchedLaptopsTest, ReadsTheModelWithoutTheZeroAtItsEnd) {
    const TemporaryHome home;
    const std::string path = home.path() + "/model";
    std::ofstream(path) << pro14 << '\0';
    EXPECT_EQ(NotchedLaptops::modelOfThisMachine(path), pro14);
}

TEST(NotchedLaptopsTest, AMachineThatDoesNotTellHasNoModel) {
    EXPECT_EQ(NotchedLaptops::modelOfThisMachine("/nowhere/model"), "");
}

} // namespace
} // namespace sallowmere
