// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/JSONLine.h"

#include "Support/Times.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using namespace std::chrono;

TEST(JSONLine, ReadsTimesInAnyZone) {
    const auto day = sys_days(2025y / June / 2);
    struct Row {
        std::string_view text;
        Timestamp time;
    };
    for (const Row& row : {
             Row{"2025-06-02T09:14:05Z", day + 9h + 14min + 5s},
             Row{"2025-06-02T09:14:05.1Z", day + 9h + 14min + 5s + 100ms},
             Row{"2025-06-02T09:14:05.12Z", day + 9h + 14min + 5s + 120ms},
             Row{"2025-06-02T09:14:05.123Z", day + 9h + 14min + 5s + 123ms},
             Row{"2025-06-02T09:14:05.007Z", day + 9h + 14min + 5s + 7ms},
             Row{"2025-06-02T09:14:05+02:00", day + 7h + 14min + 5s},
             Row{"2025-06-02T09:14:05.5+02:00", day + 7h + 14min + 5s + 500ms},
             Row{"2025-06-02T09:14:05-05:30", day + 14h + 44min + 5s},
             Row{"2025-06-02T00:30:00+01:00", day - 30min},
             Row{"2025-06-02T09:14:05-00:00", day + 9h + 14min + 5s},
             Row{"2025-06-02T00:00:00+23:59", day - 23h - 59min},
             Row{"2025-06-02T23:59:59Z", day + 23h + 59min + 59s},
             Row{"2024-02-29T00:00:00Z", sys_days(2024y / February / 29)},
             Row{"1969-12-31T23:59:59Z", sys_days(1970y / January / 1) - 1s},
             Row{"0001-01-01T00:00:00Z", distantPast},
             Row{"9999-12-31T00:00:00Z", distantFuture},
         }) {
        EXPECT_EQ(JSONLine::date(row.text), row.time) << row.text;
    }
}

TEST(JSONLine, TakesNoOtherSpelling) {
    for (const std::string_view text : {
             "",
             "2025-06-02",
             "2025-06-02T09:14:05",
             "2025-06-02 09:14:05",
             "2025-06-02 09:14:05Z",
             "2025-06-02t09:14:05Z",
             "2025-06-02T09:14:05z",
             "2025-06-02T09:14Z",
             "2025-06-02T09Z",
             "2025-06-02T091405Z",
             "20250602T091405Z",
             "2025-6-2T9:14:5Z",
             "25-06-02T09:14:05Z",
             "02025-06-02T09:14:05Z",
             "+2025-06-02T09:14:05Z",
             "-2025-06-02T09:14:05Z",
             "2025-W23-1T09:14:05Z",
             "2025-153T09:14:05Z",
             "2025/06/02T09:14:05Z",
             "2025-06-02T09.14.05Z",
             "2025-06-02T09:14:05.Z",
             "2025-06-02T09:14:05,5Z",
             "2025-06-02T09:14:05.1234Z",
             "2025-06-02T09:14:05.123456Z",
             "2025-06-02T09:14:05. 5Z",
             "2025-06-02T09:14:05.-5Z",
             "2025-06-02T09:14:05+0200",
             "2025-06-02T09:14:05+02",
             "2025-06-02T09:14:05+2:00",
             "2025-06-02T09:14:05+02:0",
             "2025-06-02T09:14:05+02:000",
             "2025-06-02T09:14:05+24:00",
             "2025-06-02T09:14:05+02:60",
             "2025-06-02T09:14:05 02:00",
             "2025-06-02T09:14:05*02:00",
             "2025-06-02T09:14:05 Z",
             "2025-06-02T09:14:05Z ",
             " 2025-06-02T09:14:05Z",
             "2025-06-02T09:14:05ZZ",
             "2025-06-02T09:14:05Z+02:00",
             "2025-06-02T09:14:05GMT",
             "1748855645",
             "yesterday",
         }) {
        EXPECT_EQ(JSONLine::date(text), std::nullopt) << text;
    }
    EXPECT_EQ(JSONLine::date(std::string_view("2025-06-02T09:14:05Z\0", 21)), std::nullopt);
    EXPECT_EQ(JSONLine::date(std::nullopt), std::nullopt);
}

TEST(JSONLine, TakesNoMomentThatDoesNotExist) {
    for (const std::string_view text : {
             "2025-02-30T00:00:00Z",
             "2025-02-29T00:00:00Z",
             "1900-02-29T00:00:00Z",
             "2025-04-31T00:00:00Z",
             "2025-00-10T00:00:00Z",
             "2025-13-10T00:00:00Z",
             "2025-06-00T00:00:00Z",
             "2025-06-32T00:00:00Z",
             "2025-06-02T24:00:00Z",
             "2025-06-02T09:60:00Z",
             "2025-06-02T09:14:60Z",
             "2016-12-31T23:59:60Z",
             "2025-06-02T99:99:99Z",
         }) {
        EXPECT_EQ(JSONLine::date(text), std::nullopt) << text;
    }
}

TEST(JSONLine, FailsOnEveryPrefixOfATime) {
    const std::string_view text = "2025-06-02T09:14:05.123+02:00";
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_EQ(JSONLine::date(text.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_TRUE(JSONLine::date(text));
}

TEST(JSONLine, RefusesAFractionWhereNoneIsWanted) {
    using JSONLine::Fraction;
    EXPECT_EQ(JSONLine::date("2025-06-02T09:14:05.0Z", Fraction::refused), std::nullopt);
    EXPECT_EQ(JSONLine::date("2025-06-02T09:14:05.123+02:00", Fraction::refused), std::nullopt);
    EXPECT_EQ(JSONLine::date("2025-06-02T09:14:05+02:00", Fraction::refused),
              at("2025-06-02T07:14:05Z"));
}

} // namespace
} // namespace sallowmere
