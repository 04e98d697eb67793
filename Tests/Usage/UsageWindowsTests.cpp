// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageWindows.h"
#include "Support/Times.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace sallowmere {
namespace {

using UsageWindows::assemble;
using UsageWindows::deriveChain;
using UsageWindows::nextWeeklyReset;

/// A moment of one day.
Timestamp clock(const std::string& time) {
    return at("2026-06-10T" + time + "Z");
}

Sample sample(Timestamp time, double weighted = 1, std::string_view model = "sonnet") {
    return {"m", time, weighted, model};
}

std::vector<Sample> samplesAt(const std::vector<std::string>& times) {
    std::vector<Sample> samples;
    double weighted = 1;
    for (const std::string& time : times) {
        samples.push_back(sample(clock(time), weighted));
        weighted *= 10;
    }
    return samples;
}

constexpr Timestamp justAfter(Timestamp time) {
    return time + std::chrono::microseconds(1);
}

constexpr Timestamp justBefore(Timestamp time) {
    return time - std::chrono::microseconds(1);
}

TEST(NextWeeklyReset, IsUnknownWithoutAnAnchor) {
    EXPECT_EQ(nextWeeklyReset(std::nullopt, clock("12:00:00")), std::nullopt);
}

TEST(NextWeeklyReset, IsTheNextWholeWeekFromTheAnchorLaterThanNow) {
    const Timestamp now = clock("12:00:00");
    const struct {
        double anchorFromNow;
        double resetFromNow;
    } rows[] = {
        {1, 1},
        {604'800, 604'800},
        {86'400.0 * 365, 86'400.0 * 365}, // ahead: returned as it is
        {0, 604'800},
        {-1, 604'799},
        {-604'799, 1},
        {-604'800, 604'800}, // whole weeks ago: a week from now
        {-604'801, 604'799},
        {-2.5 * 604'800, 0.5 * 604'800},
        {-10 * 604'800.0, 604'800},
    };
    for (const auto& [anchorFromNow, resetFromNow] : rows) {
        EXPECT_EQ(nextWeeklyReset(advancedBy(now, anchorFromNow), now),
                  advancedBy(now, resetFromNow))
            << anchorFromNow;
    }
}

TEST(NextWeeklyReset, IsExactToTheMicrosecond) {
    const Timestamp now = clock("12:00:00");
    const Timestamp weekAgo = advancedBy(now, -604'800);
    EXPECT_EQ(nextWeeklyReset(justAfter(weekAgo), now), justAfter(now));
    EXPECT_EQ(nextWeeklyReset(justBefore(weekAgo), now), advancedBy(justBefore(now), 604'800));
    EXPECT_EQ(nextWeeklyReset(justAfter(now), now), justAfter(now));
}

TEST(NextWeeklyReset, TakesAnchorsAndMomentsFromAnyYear) {
    const Timestamp first = at("0001-01-01T00:00:00Z");
    const Timestamp last = at("9999-12-31T23:59:59Z");
    const Timestamp now = clock("12:00:00");
    EXPECT_EQ(nextWeeklyReset(last, now), last);
    EXPECT_EQ(nextWeeklyReset(last, first), last);
    EXPECT_EQ(nextWeeklyReset(first, first), advancedBy(first, 604'800));
    EXPECT_EQ(nextWeeklyReset(last, last), advancedBy(last, 604'800));
    // The first of January of the year 1 was a Monday.
    EXPECT_EQ(nextWeeklyReset(first, now), at("2026-06-15T00:00:00Z"));
    EXPECT_EQ(nextWeeklyReset(first, last), at("9999-12-27T00:00:00Z") + std::chrono::days(7));
}

TEST(NextWeeklyReset, LiesWithinAWeekAndAWholeNumberOfWeeksFromThePast) {
    std::mt19937_64 engine(7);
    const Timestamp now = clock("12:00:00");
    std::uniform_int_distribution<std::int64_t> age(
        0, std::chrono::microseconds(now - distantPast).count());
    for (int i = 0; i < 10'000; ++i) {
        const Timestamp anchor = now - std::chrono::microseconds(age(engine));
        const Timestamp reset = nextWeeklyReset(anchor, now).value();
        ASSERT_GT(reset, now) << age.max();
        ASSERT_LE(reset - now, std::chrono::weeks(1));
        ASSERT_EQ((reset - anchor) % std::chrono::weeks(1), std::chrono::microseconds(0));
    }
}

TEST(DeriveChain, OpensABlockAtTheFirstSampleOutsideTheLastOne) {
    const struct {
        std::vector<std::string> times; // weighing 1, 10, 100 ...
        const char* anchor;
        double peak;
    } rows[] = {
        {{"10:00:00"}, "10:00:00", 1},
        {{"10:00:00", "10:00:00"}, "10:00:00", 11},
        {{"10:00:00", "14:59:59"}, "10:00:00", 11},
        {{"10:00:00", "14:59:59.999"}, "10:00:00", 11},
        {{"10:00:00", "15:00:00"}, "15:00:00", 10},
        {{"10:00:00", "14:59:59", "15:00:00"}, "15:00:00", 100},
        {{"10:17:23.456", "15:17:23.455"}, "10:17:23.456", 11},
        {{"10:17:23.456", "15:17:23.456"}, "15:17:23.456", 10},
        // From the block's start, not from the last sample.
        {{"01:00:00", "05:00:00", "07:00:00"}, "07:00:00", 100},
        {{"01:00:00", "05:00:00", "07:00:00", "11:59:59", "12:00:00"}, "12:00:00", 10'000},
    };
    for (const auto& row : rows) {
        const UsageWindows::Chain chain = deriveChain(samplesAt(row.times));
        EXPECT_EQ(chain.anchor, clock(row.anchor)) << testing::PrintToString(row.times);
        EXPECT_EQ(chain.peak, row.peak) << testing::PrintToString(row.times);
    }
}

TEST(DeriveChain, HasNothingWithoutSamples) {
    const UsageWindows::Chain chain = deriveChain({});
    EXPECT_EQ(chain.anchor, std::nullopt);
    EXPECT_EQ(chain.peak, 0);
}

TEST(DeriveChain, FindsTheLargestBlockWhereverItStands) {
    for (const std::size_t largest : {0U, 1U, 2U}) {
        std::vector<Sample> samples = samplesAt({"01:00:00", "08:00:00", "15:00:00"});
        samples[largest].weighted = 5'000;
        const UsageWindows::Chain chain = deriveChain(samples);
        EXPECT_EQ(chain.peak, 5'000) << largest;
        EXPECT_EQ(chain.anchor, clock("15:00:00"));
    }
}

TEST(DeriveChain, NeverPeaksBelowZero) {
    const std::vector<Sample> samples{sample(clock("10:00:00"), -5)};
    EXPECT_EQ(deriveChain(samples).peak, 0);
    EXPECT_EQ(deriveChain(samples).anchor, clock("10:00:00"));
}

TEST(DeriveChain, SumsInTheOrderOfTheSamples) {
    const Timestamp time = clock("10:00:00");
    const std::vector<Sample> hugeFirst{sample(time, 1e16), sample(time, 1), sample(time, 1)};
    const std::vector<Sample> hugeLast{sample(time, 1), sample(time, 1), sample(time, 1e16)};
    EXPECT_EQ(deriveChain(hugeFirst).peak, 1e16);
    EXPECT_EQ(deriveChain(hugeLast).peak, 1e16 + 2);
}

TEST(Advance, MovesOnToTheBlockOfTheLastSample) {
    const struct {
        const char* anchor;
        std::vector<std::string> times;
        const char* moved;
    } rows[] = {
        {"10:00:00", {}, "10:00:00"},
        {"10:00:00", {"10:00:00"}, "10:00:00"},
        {"10:00:00", {"14:59:59.999"}, "10:00:00"},
        {"10:00:00", {"15:00:00"}, "15:00:00"},
        {"10:00:00", {"09:00:00"}, "10:00:00"}, // never back
        {"10:00:00", {"01:00:00", "08:00:00"}, "10:00:00"},
        {"10:00:00", {"16:30:00"}, "16:30:00"}, // to a sample, not by whole blocks
        {"10:00:00", {"16:30:00", "17:00:00", "21:29:59"}, "16:30:00"},
        {"10:00:00", {"16:30:00", "17:00:00", "21:30:00"}, "21:30:00"},
        {"01:00:00", {"03:00:00", "06:00:00", "10:00:00", "11:00:00", "17:00:00"}, "17:00:00"},
        // The chain would begin its block at 08:00 and include 12:00.
        {"10:00:00", {"08:00:00", "12:00:00"}, "10:00:00"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(UsageWindows::advance(clock(row.anchor), samplesAt(row.times)), clock(row.moved))
            << row.anchor << testing::PrintToString(row.times);
    }
}

TEST(Advance, LeavesAnUnknownStartUnknown) {
    EXPECT_EQ(UsageWindows::advance(std::nullopt, samplesAt({"10:00:00", "16:00:00"})),
              std::nullopt);
}

/// The windows of some samples, with allowances below, between or above their sums.
class AssembleTest : public testing::Test {
protected:
    Settings settings;
    Timestamp now = clock("12:00:00");
    std::optional<Timestamp> blockStart;

    UsageSnapshot windows(const std::vector<Sample>& samples) {
        return assemble(samples, settings, now, blockStart);
    }
};

TEST_F(AssembleTest, WithoutSamplesAllIsZeroAndTheBlockUnknown) {
    const UsageSnapshot snapshot = windows({});
    EXPECT_EQ(snapshot.fiveHour, (UsageWindow{0, settings.fiveHourLimit, {}, {}}));
    EXPECT_EQ(snapshot.weekly, (UsageWindow{0, settings.weeklyLimit, {}, {}}));
    EXPECT_EQ(snapshot.weeklyFable, (UsageWindow{0, settings.weeklyFableLimit, {}, {}}));
    EXPECT_EQ(snapshot.scopedLabel, u"Fable");
    EXPECT_EQ(snapshot.computedAt, now);
    EXPECT_EQ(blockStart, std::nullopt);
}

TEST_F(AssembleTest, TheWeekIsTheLastSevenDaysWithoutAnAnchor) {
    const Timestamp weekStart = advancedBy(now, -604'800);
    const std::vector<Sample> samples{
        sample(justBefore(weekStart), 1),  sample(weekStart, 10),
        sample(justAfter(weekStart), 100), sample(now, 1'000),
        sample(justAfter(now), 10'000),
    };
    EXPECT_EQ(windows(samples).weekly, (UsageWindow{1'100, settings.weeklyLimit, {}, {}}));
}

TEST_F(AssembleTest, TheWeekEndsAtTheNextResetWithAnAnchor) {
    settings.weeklyResetDate = advancedBy(now, -2.5 * 604'800);
    const Timestamp weekStart = advancedBy(now, -302'400);
    const std::vector<Sample> samples{
        sample(justBefore(weekStart), 1, "opus"),  sample(weekStart, 10, "opus"),
        sample(justAfter(weekStart), 100, "opus"), sample(now, 1'000, "opus"),
        sample(justAfter(now), 10'000, "opus"),
    };
    const UsageSnapshot snapshot = windows(samples);
    EXPECT_EQ(snapshot.weekly, (UsageWindow{1'100, settings.weeklyLimit, 302'400, {}}));
    EXPECT_EQ(snapshot.weeklyFable, (UsageWindow{1'100, settings.weeklyFableLimit, 302'400, {}}));
}

TEST_F(AssembleTest, AnAnchorInAFarYearIsNoTrouble) {
    settings.weeklyResetDate = at("0001-01-01T00:00:00Z");
    UsageWindow weekly = windows({sample(now, 1)}).weekly;
    EXPECT_EQ(weekly.weightedTokens, 1);
    EXPECT_EQ(weekly.resetsIn, secondsBetween(now, at("2026-06-15T00:00:00Z")));

    settings.weeklyResetDate = at("9999-12-31T23:59:59Z");
    weekly = windows({sample(now, 1)}).weekly;
    EXPECT_EQ(weekly.weightedTokens, 0) << "the week before the reset has not begun";
    EXPECT_EQ(weekly.resetsIn, secondsBetween(now, at("9999-12-31T23:59:59Z")));
}

TEST_F(AssembleTest, TheFamilysWeekCountsItsModelsOnly) {
    const UsageSnapshot snapshot =
        windows({sample(now, 1, "claude-opus-4-1"), sample(now, 10, "claude-sonnet-4-5"),
                 sample(now, 100, "fable"), sample(now, 1'000, ""), sample(now, 10'000, "mythos")});
    EXPECT_EQ(snapshot.weekly.weightedTokens, 11'111);
    EXPECT_EQ(snapshot.weeklyFable.value().weightedTokens, 10'101);
}

TEST_F(AssembleTest, TheBlockRunsFiveHoursFromItsStart) {
    now = clock("13:00:00");
    const UsageWindow fiveHour =
        windows(samplesAt({"02:00:00", "10:00:00", "12:00:00", "14:59:59.999"})).fiveHour;
    EXPECT_EQ(blockStart, clock("10:00:00"));
    EXPECT_EQ(fiveHour, (UsageWindow{1'110, settings.fiveHourLimit, 7'200, {}}))
        << "later than now counts too";
}

TEST_F(AssembleTest, TheBlockEndsAtItsEnd) {
    const std::vector<Sample> samples = samplesAt({"10:00:00"});
    now = justBefore(clock("15:00:00"));
    EXPECT_EQ(windows(samples).fiveHour, (UsageWindow{1, settings.fiveHourLimit, 1e-6, {}}));
    now = clock("15:00:00");
    EXPECT_EQ(windows(samples).fiveHour, (UsageWindow{0, settings.fiveHourLimit, {}, {}}));
    EXPECT_EQ(blockStart, clock("10:00:00")) << "its start is kept";
}

TEST_F(AssembleTest, AKnownBlockStartIsOnlyMovedOn) {
    blockStart = clock("10:00:00");
    EXPECT_EQ(windows(samplesAt({"08:00:00", "12:00:00"})).fiveHour.weightedTokens, 10);
    EXPECT_EQ(blockStart, clock("10:00:00"));

    now = clock("16:00:00");
    EXPECT_EQ(windows(samplesAt({"08:00:00", "12:00:00", "15:30:00"})).fiveHour.weightedTokens,
              100);
    EXPECT_EQ(blockStart, clock("15:30:00")) << "the chain would say 15:30 only from here on";

    EXPECT_EQ(windows({}).fiveHour.weightedTokens, 0);
    EXPECT_EQ(blockStart, clock("15:30:00"));
}

TEST_F(AssembleTest, AllowancesAreNeverBelowWhatIsUsed) {
    settings.fiveHourLimit = 50;
    settings.weeklyLimit = 60;
    settings.weeklyFableLimit = 70;
    const auto limits = [this](double tokens) {
        const UsageSnapshot snapshot = windows({sample(now, tokens, "opus")});
        return std::vector{snapshot.fiveHour.limit, snapshot.weekly.limit,
                           snapshot.weeklyFable.value().limit};
    };
    EXPECT_EQ(limits(10), (std::vector<double>{50, 60, 70}));
    EXPECT_EQ(limits(65), (std::vector<double>{65, 65, 70}));
    EXPECT_EQ(limits(100), (std::vector<double>{100, 100, 100}));
}

TEST_F(AssembleTest, TheLargestBlockRaisesTheFiveHourAllowance) {
    settings.fiveHourLimit = 50;
    const std::vector<Sample> samples{sample(clock("01:00:00"), 400),
                                      sample(clock("02:00:00"), 100),
                                      sample(clock("11:00:00"), 30)};
    EXPECT_EQ(windows(samples).fiveHour, (UsageWindow{30, 500, 14'400, {}}));
    settings.fiveHourLimit = 600;
    EXPECT_EQ(windows(samples).fiveHour, (UsageWindow{30, 600, 14'400, {}}));
}

TEST_F(AssembleTest, ABlockBesideTheChainRaisesItsOwnAllowance) {
    // The chain's blocks hold 8 and 8; the known one, from 10:00 on, holds more than either.
    settings.fiveHourLimit = 1;
    blockStart = clock("10:00:00");
    const std::vector<Sample> samples{sample(clock("06:00:00"), 2), sample(clock("10:30:00"), 6),
                                      sample(clock("11:30:00"), 8)};
    EXPECT_EQ(deriveChain(samples).peak, 8);
    EXPECT_EQ(windows(samples).fiveHour, (UsageWindow{14, 14, 10'800, {}}));
}

TEST_F(AssembleTest, SumsRunInTheOrderOfTheSamples) {
    const UsageSnapshot hugeFirst =
        windows({sample(now, 1e16, "opus"), sample(now, 1, "opus"), sample(now, 1, "opus")});
    EXPECT_EQ(hugeFirst.weekly.weightedTokens, 1e16);
    EXPECT_EQ(hugeFirst.weeklyFable.value().weightedTokens, 1e16);
    EXPECT_EQ(hugeFirst.fiveHour.weightedTokens, 1e16);

    const UsageSnapshot hugeLast =
        windows({sample(now, 1, "opus"), sample(now, 1, "opus"), sample(now, 1e16, "opus")});
    EXPECT_EQ(hugeLast.weekly.weightedTokens, 1e16 + 2);
    EXPECT_EQ(hugeLast.weeklyFable.value().weightedTokens, 1e16 + 2);
    EXPECT_EQ(hugeLast.fiveHour.weightedTokens, 1e16 + 2);
}

} // namespace
} // namespace sallowmere
