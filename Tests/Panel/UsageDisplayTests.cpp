// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/UsageDisplay.h"

#include <gtest/gtest.h>

#include <vector>

namespace sallowmere {
namespace {

using UsageDisplay::PercentColor;

UsageWindow official(double fraction) {
    UsageWindow window;
    window.officialFraction = fraction;
    return window;
}

UsageWindow counted(double tokens, double limit) {
    UsageWindow window;
    window.weightedTokens = tokens;
    window.limit = limit;
    return window;
}

struct ColorRow {
    UsageWindow window;
    PercentColor plain;
    PercentColor tinted;
};

TEST(PercentColor, FollowsTheUsedShare) {
    const std::vector<ColorRow> rows{
        {official(0.85), PercentColor::red, PercentColor::red},
        {official(0.8), PercentColor::red, PercentColor::red},
        {official(3), PercentColor::red, PercentColor::red},
        {official(0.79999), PercentColor::orange, PercentColor::tint},
        {official(0.6), PercentColor::orange, PercentColor::tint},
        {official(0.5), PercentColor::orange, PercentColor::tint},
        {official(0.49999), PercentColor::green, PercentColor::tint},
        {official(0.3), PercentColor::green, PercentColor::tint},
        {official(0), PercentColor::green, PercentColor::tint},
        {official(-1), PercentColor::green, PercentColor::tint},
        {counted(8, 10), PercentColor::red, PercentColor::red},
        {counted(5, 10), PercentColor::orange, PercentColor::tint},
        {counted(0, 10), PercentColor::green, PercentColor::tint},
        {counted(9, 0), PercentColor::green, PercentColor::tint},
        {counted(9, -1), PercentColor::green, PercentColor::tint},
    };
    for (const ColorRow& row : rows) {
        const double shown =
            row.window.officialFraction.value_or(row.window.weightedTokens / row.window.limit);
        EXPECT_EQ(UsageDisplay::percentColor(row.window, false), row.plain) << shown;
        EXPECT_EQ(UsageDisplay::percentColor(row.window, true), row.tinted) << shown;
    }
}

TEST(PercentColor, BelievesTheServiceBeforeTheCount) {
    UsageWindow window = counted(9, 10);
    window.officialFraction = 0.1;
    EXPECT_EQ(UsageDisplay::percentColor(window, false), PercentColor::green);
}

UsageSnapshot snapshot() {
    UsageSnapshot usage;
    usage.fiveHour = counted(12e6, 50e6);
    usage.weekly = counted(140e6, 350e6);
    usage.weeklyFable = counted(30e6, 180e6);
    return usage;
}

TEST(FooterText, ComparesWithTheLimitsOfTheSettings) {
    EXPECT_EQ(UsageDisplay::footerText(snapshot()),
              "5h 12.0M / 50.0M  ·  7d 140.0M / 350.0M  ·  F 30.0M / 180.0M wtok · est");
}

TEST(FooterText, HasTwoPartsWithoutAFamily) {
    UsageSnapshot usage = snapshot();
    usage.weeklyFable.reset();
    EXPECT_EQ(UsageDisplay::footerText(usage),
              "5h 12.0M / 50.0M  ·  7d 140.0M / 350.0M wtok · est");
}

TEST(FooterText, DropsTheLimitsWhereTheServiceTellsBothShares) {
    UsageSnapshot usage = snapshot();
    usage.fiveHour.officialFraction = 0.2;
    usage.weekly.officialFraction = 0.4;
    EXPECT_EQ(UsageDisplay::footerText(usage), "5h 12.0M  ·  7d 140.0M  ·  F 30.0M wtok");
    usage.weeklyFable.reset();
    EXPECT_EQ(UsageDisplay::footerText(usage), "5h 12.0M  ·  7d 140.0M wtok");
}

TEST(FooterText, KeepsTheLimitsWhereTheServiceTellsOneShare) {
    UsageSnapshot usage = snapshot();
    usage.fiveHour.officialFraction = 0.2;
    EXPECT_EQ(UsageDisplay::footerText(usage),
              "5h 12.0M / 50.0M  ·  7d 140.0M / 350.0M  ·  F 30.0M / 180.0M wtok · est");
    usage.fiveHour.officialFraction.reset();
    usage.weekly.officialFraction = 0.2;
    EXPECT_TRUE(UsageDisplay::footerText(usage).endsWith(u" wtok · est"));
}

TEST(FooterText, NamesTheFamilyByItsFirstCharacter) {
    UsageSnapshot usage = snapshot();
    usage.scopedLabel = QStringLiteral("👩‍🔬 lab");
    EXPECT_TRUE(UsageDisplay::footerText(usage).contains(u"·  👩‍🔬 30.0M / 180.0M wtok"));
    usage.scopedLabel.clear();
    EXPECT_TRUE(UsageDisplay::footerText(usage).contains(u"  ·   30.0M / 180.0M wtok"));
}

} // namespace
} // namespace sallowmere
