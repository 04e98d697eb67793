// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageSnapshot.h"
#include "Support/Times.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sallowmere {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(UsageWindow, PercentPrefersTheServicesShare) {
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, {}}).percent(), 60);
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, 0.425}).percent(), 43);
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, 0.0}).percent(), 0);
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, 1.7}).percent(), 100);
    EXPECT_EQ((UsageWindow{30'000'000, 0, {}, {}}).percent(), 0);
    EXPECT_EQ((UsageWindow{30'000'000, 0, {}, 0.5}).percent(), 50);
}

TEST(UsageWindow, PercentOfTokensStaysWithinItsRange) {
    const struct {
        double tokens;
        double limit;
        int percent;
    } rows[] = {
        {0, 1, 0},   {0, 0, 0},       {5, -1, 0},    {1, 1, 100},
        {2, 1, 100}, {1e300, 1, 100}, {1, 1e300, 0}, {infinity, 1, 100},
    };
    for (const auto& [tokens, limit, percent] : rows) {
        EXPECT_EQ((UsageWindow{tokens, limit, {}, {}}).percent(), percent)
            << tokens << " of " << limit;
    }
}

TEST(UsageWindow, PercentOfTheServicesShareStaysWithinItsRange) {
    const std::pair<double, int> rows[] = {
        {-infinity, 0}, {-0.5, 0},        {-0.0, 0},    {0, 0},          {1e-300, 0},
        {1, 100},       {1.0000001, 100}, {1e300, 100}, {infinity, 100},
    };
    for (const auto& [fraction, percent] : rows) {
        EXPECT_EQ((UsageWindow{0, 1, {}, fraction}).percent(), percent) << fraction;
    }
}

TEST(UsageWindow, PercentIsRoundedHalvesUp) {
    // These fractions times 100 are halves exactly.
    const std::pair<double, int> rows[] = {
        {0.125, 13}, {0.375, 38}, {0.625, 63},  {0.875, 88}, {0.005, 1},  {0.425, 43}, {0.0049, 0},
        {0.124, 12}, {0.126, 13}, {0.995, 100}, {0.994, 99}, {0.334, 33}, {0.666, 67},
    };
    for (const auto& [fraction, percent] : rows) {
        EXPECT_EQ((UsageWindow{0, 1, {}, fraction}).percent(), percent) << fraction;
        EXPECT_EQ((UsageWindow{fraction, 1, {}, {}}).percent(), percent) << fraction;
    }
}

TEST(UsageWindow, PercentOfNoNumberDoesNotCrash) {
    for (const UsageWindow& window :
         {UsageWindow{notANumber, 1, {}, {}}, UsageWindow{infinity, infinity, {}, {}},
          UsageWindow{0, 1, {}, notANumber}}) {
        EXPECT_GE(window.percent(), 0);
        EXPECT_LE(window.percent(), 100);
    }
}

TEST(UsageSnapshot, BeforeTheFirstComputationIsEmpty) {
    const UsageSnapshot snapshot;
    EXPECT_EQ(snapshot.fiveHour, (UsageWindow{0, 1, {}, {}}));
    EXPECT_EQ(snapshot.weekly, (UsageWindow{0, 1, {}, {}}));
    EXPECT_EQ(snapshot.weeklyFable, std::nullopt);
    EXPECT_EQ(snapshot.scopedLabel, u"Fable");
    EXPECT_EQ(snapshot.computedAt, at("0001-01-01T00:00:00Z"));
}

TEST(UsageSnapshot, EqualsFieldByField) {
    const UsageSnapshot snapshot{{1, 2, 3, 0.5}, {4, 5, 6, 0.5}, UsageWindow{7, 8, 9, 0.5}};
    EXPECT_EQ(snapshot, UsageSnapshot(snapshot));
    const auto differs = [&snapshot](auto change) {
        UsageSnapshot other = snapshot;
        change(other);
        return !(other == snapshot);
    };
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.fiveHour.weightedTokens = 0; }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.fiveHour.limit = 0; }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.fiveHour.resetsIn.reset(); }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.weekly.officialFraction = 0.25; }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.weeklyFable.reset(); }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.scopedLabel = QStringLiteral("Opus"); }));
    EXPECT_TRUE(differs([](UsageSnapshot& s) { s.computedAt = distantFuture; }));
}

TEST(OfficialUsage, IsEmptyWithoutAnyAllowance) {
    const OfficialUsage::Limit limit{0.5, {}};
    EXPECT_TRUE(OfficialUsage().isEmpty());
    EXPECT_TRUE((OfficialUsage{{}, {}, {}, QStringLiteral("Opus"), distantFuture}).isEmpty());
    EXPECT_FALSE((OfficialUsage{limit, {}, {}, {}, {}}).isEmpty());
    EXPECT_FALSE((OfficialUsage{{}, limit, {}, {}, {}}).isEmpty());
    EXPECT_FALSE((OfficialUsage{{}, {}, limit, {}, {}}).isEmpty());
}

/// The service's figures laid over computed ones.
class OfficialFiguresTest : public testing::Test {
protected:
    const Timestamp now = at("2026-06-10T12:00:00Z");
    const UsageWindow fiveHour{12'000'000, 50'000'000, 3'000, {}};
    const UsageWindow weekly{100'000'000, 350'000'000, {}, {}};
    const UsageWindow fable{20'000'000, 180'000'000, 7'000, {}};
    UsageSnapshot local{fiveHour, weekly, fable, QStringLiteral("Fable"),
                        at("2026-06-10T11:59:58Z")};
    OfficialUsage official;

    OfficialFiguresTest() { official.fetchedAt = now; }

    OfficialUsage::Limit limit(double fraction, std::optional<double> resetsIn = {}) const {
        return {fraction, resetsIn ? std::optional(advancedBy(now, *resetsIn)) : std::nullopt};
    }

    UsageSnapshot merged() const { return local.applying(official, now); }
};

TEST_F(OfficialFiguresTest, AWindowTakesTheServicesShareAndResetTime) {
    EXPECT_EQ(fiveHour.adopting(limit(0.3, 1'200), now),
              (UsageWindow{12'000'000, 50'000'000, 1'200, 0.3}));
    EXPECT_EQ(fiveHour.adopting(limit(0.3, 0), now), (UsageWindow{12'000'000, 50'000'000, 0, 0.3}));
    EXPECT_EQ(fiveHour.adopting(limit(0.3, -60), now),
              (UsageWindow{12'000'000, 50'000'000, 0, 0.3}));
    EXPECT_EQ(fiveHour.adopting(limit(0.3), now),
              (UsageWindow{12'000'000, 50'000'000, 3'000, 0.3}));
    EXPECT_EQ(weekly.adopting(limit(0), now), (UsageWindow{100'000'000, 350'000'000, {}, 0.0}));
    EXPECT_EQ(fiveHour.adopting({}, now), fiveHour);
}

TEST_F(OfficialFiguresTest, ANewShareReplacesAnOlderOne) {
    EXPECT_EQ((UsageWindow{1, 2, 3, 0.9}).adopting(limit(0.3, 60), now),
              (UsageWindow{1, 2, 60, 0.3}));
}

TEST_F(OfficialFiguresTest, WithoutAnyTheLocalFiguresStay) {
    EXPECT_EQ(local.applying(std::nullopt, now), local);
    EXPECT_EQ(merged(), local);
}

TEST_F(OfficialFiguresTest, EachWindowTakesItsOwn) {
    official.session = limit(0.1, 100);
    official.weekly = limit(0.2, 200);
    official.scoped = limit(0.3, 300);
    official.scopedLabel = QStringLiteral("Opus");
    const UsageSnapshot snapshot = merged();
    EXPECT_EQ(snapshot.fiveHour, (UsageWindow{12'000'000, 50'000'000, 100, 0.1}));
    EXPECT_EQ(snapshot.weekly, (UsageWindow{100'000'000, 350'000'000, 200, 0.2}));
    EXPECT_EQ(snapshot.weeklyFable, (UsageWindow{20'000'000, 180'000'000, 300, 0.3}));
    EXPECT_EQ(snapshot.scopedLabel, u"Opus");
    EXPECT_EQ(snapshot.computedAt, local.computedAt);
}

TEST_F(OfficialFiguresTest, TheLocalSnapshotItselfIsNotChanged) {
    const UsageSnapshot before = local;
    official.session = limit(0.1, 100);
    merged();
    EXPECT_EQ(local, before);
}

TEST_F(OfficialFiguresTest, FromFifteenMinutesOnTheyAreStale) {
    official.session = limit(0.1, 100);
    official.weekly = limit(0.2, 200);
    official.scopedLabel = QStringLiteral("Opus");
    const std::pair<double, bool> ages[] = {
        {-60, true}, {0, true}, {899, true}, {899.999999, true}, {900, false}, {86'400, false},
    };
    for (const auto& [age, isApplied] : ages) {
        official.fetchedAt = advancedBy(now, -age);
        const UsageSnapshot snapshot = merged();
        EXPECT_EQ(snapshot.fiveHour.officialFraction.has_value(), isApplied) << age;
        EXPECT_EQ(snapshot == local, !isApplied) << age;
    }
}

TEST_F(OfficialFiguresTest, AFamilysShareAloneMakesItsWindowOfTheLocalWeek) {
    local.weeklyFable.reset();
    official.scoped = limit(0.7, 500);
    EXPECT_EQ(merged().weeklyFable, (UsageWindow{100'000'000, 350'000'000, 500, 0.7}));
    EXPECT_EQ(merged().weekly, weekly);
}

TEST_F(OfficialFiguresTest, TheFamilysWindowIsMadeOfTheWeekBeforeTheServiceSpoke) {
    local.weeklyFable.reset();
    local.weekly.resetsIn = 9'000;
    official.weekly = limit(0.2, 200);
    official.scoped = limit(0.7);
    EXPECT_EQ(merged().weeklyFable, (UsageWindow{100'000'000, 350'000'000, 9'000, 0.7}));
}

TEST_F(OfficialFiguresTest, AWeekWithoutAFamilysShareDropsTheFamilysWindow) {
    official.weekly = limit(0.2, 200);
    EXPECT_EQ(merged().weeklyFable, std::nullopt);
}

TEST_F(OfficialFiguresTest, ASessionAloneLeavesTheFamilysWindow) {
    official.session = limit(0.1, 100);
    EXPECT_EQ(merged().weeklyFable, fable);
    EXPECT_EQ(merged().weekly, weekly);
}

TEST_F(OfficialFiguresTest, ALabelThatSaysNothingLeavesTheOldOne) {
    official.session = limit(0.1, 100);
    EXPECT_EQ(merged().scopedLabel, u"Fable");
    official.scopedLabel = QString();
    EXPECT_EQ(merged().scopedLabel, u"Fable");
    official.scopedLabel = QStringLiteral("Opus");
    EXPECT_EQ(merged().scopedLabel, u"Opus") << "also without a family's share";
    local.scopedLabel = QStringLiteral("Sonnet");
    official.scopedLabel.reset();
    EXPECT_EQ(merged().scopedLabel, u"Sonnet");
}

TEST(UsageWindow, PercentOfWhatIsNoShareIsZero) {
    EXPECT_EQ((UsageWindow{-5, 100, {}, {}}).percent(), 0);
    EXPECT_EQ((UsageWindow{infinity, infinity, {}, {}}).percent(), 0);
    EXPECT_EQ((UsageWindow{1, 100, {}, notANumber}).percent(), 0);
}

} // namespace
} // namespace sallowmere
