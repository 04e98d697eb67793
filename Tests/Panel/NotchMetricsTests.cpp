// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/NotchMetrics.h"
#include "Support/FakeScreens.h"

#include <gtest/gtest.h>

#include <utility>

namespace sallowmere {
namespace {

/// A screen with a bar of 25 at its top.
Screen plain(const Rect& frame) {
    return {frame, {frame.x, frame.y, frame.width, frame.height - 25}, 0, {}, {}};
}

Screen notched(const Rect& frame, double notchWidth) {
    const double beside = (frame.width - notchWidth) / 2;
    return {frame, {frame.x, frame.y, frame.width, frame.height - 32}, 32, beside, beside};
}

const Rect laptop{0, 0, 1512, 982};
const Rect leftOfIt{-2560, 100, 2560, 1440};

NotchMetrics measured(std::vector<Screen> screens, std::optional<Screen> main = std::nullopt) {
    FakeScreens fake;
    fake.screens = std::move(screens);
    fake.mainScreen = main;
    return NotchMetrics::detect(std::nullopt, fake);
}

TEST(NotchMetrics, HangBelowTheBarOfAScreenWithoutANotch) {
    const NotchMetrics metrics = measured({plain(leftOfIt)});
    EXPECT_EQ(metrics, (NotchMetrics{leftOfIt, 0, 30, false, 1515}));
}

TEST(NotchMetrics, HangFromTheVeryTopOfAScreenWithANotch) {
    const NotchMetrics metrics = measured({notched(laptop, 185)});
    EXPECT_EQ(metrics, (NotchMetrics{laptop, 185, 32, true, 982}));
}

TEST(NotchMetrics, KnowTheUsualNotch) {
    Screen screen = notched(laptop, 185);
    screen.leftOfNotch.reset();
    EXPECT_EQ(measured({screen}).notchWidth, 196);
    screen = notched(laptop, 185);
    screen.rightOfNotch.reset();
    EXPECT_EQ(measured({screen}).notchWidth, 196);
}

TEST(NotchMetrics, PreferTheFirstNotchThenTheMainScreenThenTheFirst) {
    const Screen one = plain(leftOfIt);
    const Screen other = plain(laptop);
    const Screen withNotch = notched(laptop, 185);
    EXPECT_EQ(measured({one, withNotch, notched(leftOfIt, 200)}, one).screenFrame, laptop);
    EXPECT_EQ(measured({one, other}, other).screenFrame, laptop);
    EXPECT_EQ(measured({one, other}).screenFrame, leftOfIt);
}

TEST(NotchMetrics, StayWhenThereIsNoScreen) {
    const NotchMetrics before = measured({notched(laptop, 185)});
    EXPECT_EQ(NotchMetrics::detect(before, FakeScreens()), before);
}

TEST(NotchMetrics, AreMadeUpWhenThereNeverWasAScreen) {
    EXPECT_EQ(measured({}), (NotchMetrics{{0, 0, 1440, 900}, 0, 30, false, 876}));
}

TEST(NotchMetrics, GrowWithTheContentWithinBounds) {
    const NotchMetrics metrics = measured({plain(laptop)});
    for (const auto& [content, height] : std::initializer_list<std::pair<double, double>>{
             {0, 148}, {100, 148}, {120, 148}, {121, 149}, {560, 588}, {561, 588}, {900, 588}}) {
        EXPECT_EQ(metrics.frame(true, content, 96).height, height) << content;
    }
}

TEST(NotchMetrics, PlaceThePanelInTheMiddleOfTheTop) {
    const NotchMetrics metrics = measured({plain(leftOfIt)});
    EXPECT_EQ(metrics.frame(false, 0, 96), (Rect{-1400, 1485, 240, 30}));
    EXPECT_EQ(metrics.frame(true, 272, 96), (Rect{-1612, 1215, 664, 300}));
    EXPECT_EQ(measured({notched(laptop, 185)}).frame(false, 500, 60), (Rect{603.5, 950, 305, 32}));
}

TEST(NotchMetrics, KeepTheBarWideEnough) {
    EXPECT_EQ(measured({notched(laptop, 150)}).collapsedWidth(40), 240);
    EXPECT_EQ(measured({notched(laptop, 185)}).collapsedWidth(60), 305);
    EXPECT_EQ(measured({plain(laptop)}).collapsedWidth(96), 240);
    EXPECT_EQ(measured({plain(laptop)}).collapsedWidth(121), 242);
}

} // namespace
} // namespace sallowmere
