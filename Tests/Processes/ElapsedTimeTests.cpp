// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string_view>

namespace sallowmere {
namespace {

using ProcessScanner::etimeSeconds;
using ProcessScanner::prettyElapsed;

struct Age {
    std::string_view etime;
    std::int64_t seconds;
};

TEST(ElapsedSeconds, ReadDaysHoursMinutesAndSeconds) {
    for (const Age& age :
         {Age{"05", 5}, Age{"01:05", 65}, Age{"02:00:00", 7'200}, Age{"3-04:05:06", 273'906},
          Age{"00:00", 0}, Age{"99:99", 6'039}, Age{"100:00:00", 360'000},
          Age{"1-00:00:00", 86'400}, Age{"365-23:59:59", 31'622'399}, Age{"2-05", 172'805}}) {
        EXPECT_EQ(etimeSeconds(age.etime), age.seconds) << age.etime;
    }
}

TEST(ElapsedSeconds, CountUnreadableDaysAsNone) {
    for (const Age& age : {Age{"x-01:00", 60}, Age{"-01:00", 60}, Age{"1.5-01:00", 60},
                           Age{"3-", 259'200}, Age{"-", 0}}) {
        EXPECT_EQ(etimeSeconds(age.etime), age.seconds) << age.etime;
    }
}

TEST(ElapsedSeconds, SplitDaysOffAtTheFirstDash) {
    EXPECT_EQ(etimeSeconds("1-2-03:07"), 86'407);
}

TEST(ElapsedSeconds, PassOverPiecesThatAreNoNumbersInsteadOfCountingThemAsZero) {
    for (const Age& age : {Age{"05:a", 5}, Age{"1:x:2", 62}, Age{"::01::05:", 65}, Age{"1.5:07", 7},
                           Age{"1:2:x:3", 3'723}, Age{"9223372036854775808:07", 7}}) {
        EXPECT_EQ(etimeSeconds(age.etime), age.seconds) << age.etime;
    }
}

TEST(ElapsedSeconds, AreNoneWithoutOneToThreeNumbers) {
    for (const Age& age :
         {Age{"", 0}, Age{":", 0}, Age{"x", 0}, Age{"1:2:3:4", 0}, Age{"2-1:2:3:4", 172'800}}) {
        EXPECT_EQ(etimeSeconds(age.etime), age.seconds) << age.etime;
    }
}

TEST(ElapsedSeconds, ReachTheEndOf64Bits) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(etimeSeconds("9223372036854775807"), most);
    EXPECT_EQ(etimeSeconds("153722867280912930:07"), most);
    EXPECT_EQ(etimeSeconds("2562047788015215:30:07"), most);
    EXPECT_EQ(etimeSeconds("106751991167300-55807"), most);
}

TEST(ElapsedSecondsDeathTest, BeyondThatEndTheProgram) {
    for (const char* etime :
         {"153722867280912931:00", "153722867280912930:08", "2562047788015216:00:00",
          "2562047788015215:30:08", "106751991167301-00:00", "106751991167300-55808"}) {
        EXPECT_DEATH(etimeSeconds(etime), "") << etime;
    }
}

TEST(PrettyElapsed, ShowsTheTwoLargestUnits) {
    struct Case {
        std::string_view etime;
        QString text;
    };
    const Case cases[] = {
        {"", "0m"},
        {"30", "0m"},
        {"00:59", "0m"},
        {"01:00", "1m"},
        {"12:34", "12m"},
        {"59:59", "59m"},
        {"01:00:00", "1h0m"},
        {"03:05:59", "3h5m"},
        {"23:59:59", "23h59m"},
        {"1-00:00:00", "1d0h"},
        {"2-04:59:00", "2d4h"},
        {"2-05:59:59", "2d5h"},
        {"1234-23:00:00", "1234d23h"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(prettyElapsed(c.etime), c.text) << c.etime;
    }
}

} // namespace
} // namespace sallowmere
