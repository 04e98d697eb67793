// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/TimeFormat.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

namespace sallowmere {
namespace {

using Row = std::pair<double, const char*>;

const std::vector<Row>& remainingTimes() {
    static const std::vector<Row> rows{
        {0, "0m"},
        {59, "0m"},
        {59.9, "0m"},
        {60, "1m"},
        {119.999, "1m"},
        {3'599, "59m"},
        {3'599.999, "59m"},
        {3'600, "1h0m"},
        {3'660, "1h1m"},
        {7'199, "1h59m"},
        {7'500, "2h5m"},
        {96'000, "26h40m"},
        {360'000, "100h0m"},
        {604'800, "168h0m"},
        {-0.5, "0m"},
        {-30, "0m"},
        {-3'600, "0m"},
        {-1e15, "0m"},
        {251'640'000'000, "69900000h0m"},
    };
    return rows;
}

const std::vector<Row>& ages() {
    static const std::vector<Row> rows{
        {-1e15, "now"},
        {-60, "now"},
        {-0.5, "now"},
        {0, "now"},
        {59, "now"},
        {59.9, "now"},
        {60, "1m"},
        {119.999, "1m"},
        {3'599, "59m"},
        {3'599.999, "59m"},
        {3'600, "1h"},
        {7'199, "1h"},
        {7'200, "2h"},
        {86'399, "23h"},
        {86'399.999, "23h"},
        {86'400, "1d"},
        {172'799, "1d"},
        {172'800, "2d"},
        {86'400'000, "1000d"},
    };
    return rows;
}

const std::vector<Row>& tokenCounts() {
    static const std::vector<Row> rows{
        {0, "0"},
        {0.5, "0"}, // halves go to the even neighbour
        {1.5, "2"},
        {2.5, "2"},
        {999, "999"},
        {999.4, "999"},
        {999.6, "1000"}, // without moving on to the next unit
        {1'000, "1K"},
        {1'499, "1K"},
        {1'500, "2K"},
        {2'499, "2K"},
        {2'500, "2K"},
        {2'501, "3K"},
        {3'500, "4K"},
        {999'499, "999K"},
        {999'500, "1000K"},
        {999'999, "1000K"},
        {1'000'000, "1.0M"},
        {1'049'999, "1.0M"},
        {1'250'000, "1.2M"}, // exact halves of a tenth
        {1'750'000, "1.8M"},
        {1'350'000, "1.4M"}, // just above a half as a binary number
        {1'450'000, "1.4M"}, // just below
        {12'345'678, "12.3M"},
        {999'949'999, "999.9M"},
        {999'999'999, "1000.0M"},
        {1e9, "1.0B"},
        {2'345'000'000, "2.3B"},
        {2.5e12, "2500.0B"},
        {-0.5, "-0"},
        {-1, "-1"},
        {-2'500'000, "-2500000"}, // only positive counts have units
    };
    return rows;
}

TEST(TimeFormat, RemainingTimeIsInHoursAndMinutes) {
    for (const auto& [seconds, text] : remainingTimes()) {
        EXPECT_EQ(TimeFormat::remaining(seconds).toStdString(), text) << seconds;
    }
}

TEST(TimeFormat, AgeIsInItsLargestUnit) {
    for (const auto& [seconds, text] : ages()) {
        EXPECT_EQ(TimeFormat::age(seconds).toStdString(), text) << seconds;
    }
}

TEST(TimeFormat, TokensAreInTheirLargestUnit) {
    for (const auto& [count, text] : tokenCounts()) {
        EXPECT_EQ(TimeFormat::tokens(count).toStdString(), text) << count;
    }
}

TEST(TimeFormat, TimesReachTheEndsOfTheirRange) {
    const double most = 9'223'372'036'854'774'784.0;
    EXPECT_EQ(TimeFormat::remaining(most).toStdString(), "2562047788015215h13m");
    EXPECT_EQ(TimeFormat::remaining(-most).toStdString(), "0m");
    EXPECT_EQ(TimeFormat::age(most).toStdString(), "106751991167300d");
    EXPECT_EQ(TimeFormat::age(-most).toStdString(), "now");
}

TEST(TimeFormat, TokensTakeAnyValue) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(TimeFormat::tokens(infinity).toStdString(), "infB");
    EXPECT_EQ(TimeFormat::tokens(-infinity).toStdString(), "-inf");
    EXPECT_EQ(TimeFormat::tokens(std::numeric_limits<double>::quiet_NaN()).toStdString(), "nan");
    EXPECT_EQ(TimeFormat::tokens(largest).size(), 303);
    EXPECT_EQ(TimeFormat::tokens(-largest).size(), 310);
    EXPECT_EQ(TimeFormat::tokens(std::numeric_limits<double>::denorm_min()).toStdString(), "0");
}

std::string printed(const char* unit, int decimals, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f%s", decimals, value, unit);
    return text.data();
}

TEST(TimeFormat, TokensAreRoundedAsPrintfRounds) {
    for (int i = 0; i < 20'000; ++i) {
        const double small = i / 16.0;
        EXPECT_EQ(TimeFormat::tokens(small).toStdString(),
                  small < 1e3 ? printed("", 0, small) : printed("K", 0, small / 1e3));
        const double millions = 1e6 + i * 12'500.0;
        EXPECT_EQ(TimeFormat::tokens(millions).toStdString(), printed("M", 1, millions / 1e6));
        const double billions = 1e9 + i * 12'500'000.0;
        EXPECT_EQ(TimeFormat::tokens(billions).toStdString(), printed("B", 1, billions / 1e9));
    }
}

void expectTheUsualTexts() {
    for (const auto& [seconds, text] : remainingTimes()) {
        EXPECT_EQ(TimeFormat::remaining(seconds).toStdString(), text);
    }
    for (const auto& [seconds, text] : ages()) {
        EXPECT_EQ(TimeFormat::age(seconds).toStdString(), text);
    }
    for (const auto& [count, text] : tokenCounts()) {
        EXPECT_EQ(TimeFormat::tokens(count).toStdString(), text);
    }
}

class CommaPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(TimeFormat, IsTheSameInAStandardLibraryLocaleWithACommaOfItsOwn) {
    const std::locale before =
        std::locale::global(std::locale(std::locale(), new CommaPunctuation));
    expectTheUsualTexts();
    std::locale::global(before);
}

TEST(TimeFormat, IsTheSameInAQtLocaleWithAComma) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(QLocale().toString(1.5), u"1,5");
    expectTheUsualTexts();
    QLocale::setDefault(before);
}

TEST(TimeFormat, IsTheSameInACLocaleWithAComma) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    setenv("LOCPATH", SALLOWMERE_LOCALES, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    expectTheUsualTexts();
    std::setlocale(LC_ALL, before.c_str());
    unsetenv("LOCPATH");
}

} // namespace
} // namespace sallowmere
