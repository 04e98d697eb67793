// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageAPI.h"
#include "Support/Texts.h"
#include "Support/Times.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace sallowmere {
namespace {

const Timestamp now = at("2025-06-02T09:14:05.678Z");

using Limit = OfficialUsage::Limit;

std::optional<OfficialUsage> parsed(const std::string& response) {
    return UsageAPI::parse(response, now);
}

/// A response with these entries in its list.
std::optional<OfficialUsage> parsedEntries(const std::string& entries) {
    return parsed(R"({"limits":[)" + entries + "]}");
}

std::string sessionEntry(const std::string& percent, const std::string& resetsAt = "null") {
    return R"({"kind":"session","percent":)" + percent + R"(,"resets_at":)" + resetsAt + "}";
}

std::string scopedEntry(const std::string& percent, const std::string& label) {
    return R"({"kind":"weekly_scoped","percent":)" + percent + R"(,"scope":{"model":{"id":null,)"
           + R"("display_name":")" + label + R"("},"surface":null}})";
}

/// What a percentage comes to; absent when it drops its entry.
std::optional<double> fractionOf(const std::string& percent) {
    const auto usage = parsedEntries(sessionEntry(percent));
    return usage ? std::optional(usage->session.value().fraction) : std::nullopt;
}

/// The same in the older shape.
std::optional<double> olderFractionOf(const std::string& utilization) {
    const auto usage = parsed(R"({"five_hour":{"utilization":)" + utilization + "}}");
    return usage ? std::optional(usage->session.value().fraction) : std::nullopt;
}

/// When an allowance begins anew, from a JSON value.
std::optional<Timestamp> resetOf(const std::string& value) {
    return parsedEntries(sessionEntry("1", value)).value().session.value().resetsAt;
}

std::optional<Timestamp> resetAt(const std::string& text) {
    return resetOf('"' + text + '"');
}

/// The name in a scoped entry whose "scope" is this.
std::optional<std::string> labelOf(const std::string& scope) {
    const auto usage =
        parsedEntries(R"({"kind":"weekly_scoped","percent":1,"scope":)" + scope + "}");
    return utf8(usage.value().scopedLabel);
}

TEST(OfficialUsage, IsReadWhole) {
    const auto usage = parsed(R"({
        "limits": [
            {"kind": "session", "group": "session", "percent": 42.5, "severity": "normal",
             "resets_at": "2025-06-02T14:00:00.123456+00:00", "scope": null},
            {"kind": "weekly_all", "percent": 7, "resets_at": "2025-06-05T00:00:00Z"},
            {"kind": "weekly_scoped", "percent": 88.25, "resets_at": "2025-06-06T02:30:00+02:00",
             "scope": {"model": {"id": null, "display_name": "Opus"}, "surface": null}}
        ],
        "extra_usage": {"is_enabled": false}
    })");
    OfficialUsage expected;
    expected.session = Limit{0.425, at("2025-06-02T14:00:00.123Z")};
    expected.weekly = Limit{0.07, at("2025-06-05T00:00:00Z")};
    expected.scoped = Limit{0.8825, at("2025-06-06T00:30:00Z")};
    expected.scopedLabel = "Opus";
    expected.fetchedAt = now;
    EXPECT_EQ(usage, expected);
}

TEST(OfficialUsage, OfTheOlderShapeIsReadToo) {
    OfficialUsage expected;
    expected.session = Limit{0.425, at("2025-06-02T14:00:00Z")};
    expected.fetchedAt = now;
    EXPECT_EQ(parsed(R"({"five_hour":{"utilization":42.5,"resets_at":"2025-06-02T14:00:00Z"}})"),
              expected);
    expected.weekly = Limit{0.5, at("2025-06-05T00:00:00.999Z")};
    EXPECT_EQ(parsed(R"({"five_hour":{"utilization":42.5,"resets_at":"2025-06-02T14:00:00Z"},
                   "seven_day":{"utilization":50,"resets_at":"2025-06-05T00:00:00.999999Z"},
                   "seven_day_opus":{"utilization":99}})"),
              expected);
}

TEST(OfficialUsage, WithoutAnyFigureIsNone) {
    for (const char* response :
         {"", " ", "{}", "[]", "null", "42", R"("limits")", "{", R"({"limits":[]})",
          R"({"limits":[{}]})", R"({"limits":[{"kind":"session"}]})",
          R"({"limits":[{"percent":5}]})", R"({"five_hour":null,"seven_day":null})",
          R"([{"five_hour":{"utilization":5}}])", R"({"five_hour":{"utilization":5}}})",
          R"({"five_hour":{"utilization":5},})", R"({"error":{"type":"rate_limit_error"}})",
          R"({"weekly_all":{"utilization":5},"session":{"percent":5}})"}) {
        EXPECT_EQ(parsed(response), std::nullopt) << response;
    }
}

TEST(OfficialUsage, IsEmptyWithoutLimits) {
    OfficialUsage usage;
    usage.scopedLabel = "Opus";
    usage.fetchedAt = now;
    EXPECT_TRUE(usage.isEmpty());
    for (const auto limit :
         {&OfficialUsage::session, &OfficialUsage::weekly, &OfficialUsage::scoped}) {
        OfficialUsage other = usage;
        other.*limit = Limit();
        EXPECT_FALSE(other.isEmpty());
    }
}

TEST(OfficialUsage, PercentagesBecomeFractions) {
    const std::pair<const char*, double> rows[] = {
        {"0", 0},
        {"-0", 0},
        {"-0.0", 0},
        {"0.5", 0.005},
        {"1", 0.01},
        {"42.5", 0.425},
        {"99.75", 0.9975},
        {"100", 1},
        {"100.0", 1},
        {"100.001", 1},
        {"150", 1},
        {"1e2", 1},
        {"5e-1", 0.005},
        {"1e-300", 1e-302},
        {"1e300", 1},
        {"9223372036854775808", 1},
        {"123456789012345678901234567890", 1},
    };
    for (const auto& [percent, fraction] : rows) {
        EXPECT_EQ(fractionOf(percent), fraction) << percent;
        EXPECT_EQ(olderFractionOf(percent), fraction) << percent;
    }
    EXPECT_EQ(fractionOf(std::string(400, '9')), 1) << "more than any double";
}

TEST(OfficialUsage, WhatIsNoPercentageDropsItsEntry) {
    const std::vector<std::string> values{"-5",
                                          "-1",
                                          "-1e-300",
                                          "-123456789012345678901234567890",
                                          R"("50")",
                                          R"("")",
                                          "null",
                                          "true",
                                          "false",
                                          "[]",
                                          "[50]",
                                          "{}",
                                          R"({"value":50})"};
    for (const std::string& value : values) {
        EXPECT_EQ(fractionOf(value), std::nullopt) << value;
        EXPECT_EQ(olderFractionOf(value), std::nullopt) << value;
        const auto usage = parsedEntries(sessionEntry("10") + ',' + sessionEntry(value) + ','
                                         + R"({"kind":"weekly_all","percent":20})");
        EXPECT_EQ(usage.value().session, (Limit{0.1, {}})) << value;
        EXPECT_EQ(usage->weekly, (Limit{0.2, {}})) << value;
    }
}

TEST(OfficialUsage, NumbersThatJsonDoesNotHaveSpoilTheResponse) {
    for (const char* value : {"NaN", "nan", "Infinity", "-Infinity", "inf", "1e999", "+5", ".5",
                              "5.", "05", "0x5", "5%"}) {
        EXPECT_EQ(parsedEntries(sessionEntry("10") + ',' + sessionEntry(value)), std::nullopt)
            << value;
    }
}

TEST(OfficialUsage, TheKindOfAnEntryMustBeOneOfThree) {
    for (const char* kind :
         {R"("weekly")", R"("Session")", R"("session ")", R"("daily")", R"("")", R"("five_hour")",
          "null", "true", "1", R"(["session"])", R"({"session":1})"}) {
        const std::string entry = std::string(R"({"percent":50,"kind":)") + kind + '}';
        EXPECT_EQ(parsedEntries(entry), std::nullopt) << kind;
        EXPECT_EQ(parsedEntries(entry + ',' + sessionEntry("10")).value().session, (Limit{0.1, {}}))
            << kind;
    }
    EXPECT_NE(parsedEntries(R"({"percent":50,"kind":"sess\u0069on"})"), std::nullopt);
}

TEST(OfficialUsage, ALaterEntryOfTheSameKindReplacesAnEarlierOne) {
    const auto usage =
        parsedEntries(R"({"kind":"session","percent":70,"resets_at":"2025-06-02T14:00:00Z"},)"
                      R"({"kind":"weekly_all","percent":60,"resets_at":"2025-06-02T14:00:00Z"},)"
                      R"({"kind":"session","percent":40},{"kind":"weekly_all","percent":80})");
    EXPECT_EQ(usage.value().session, (Limit{0.4, {}}));
    EXPECT_EQ(usage->weekly, (Limit{0.8, {}}));
}

TEST(OfficialUsage, TheMostUsedScopedAllowanceCounts) {
    struct Row {
        std::vector<std::pair<const char*, const char*>> entries;
        double fraction;
        const char* label;
    };
    for (const auto& [entries, fraction, label] : {
             Row{{{"40", "A"}, {"70", "B"}}, 0.7, "B"},
             Row{{{"70", "A"}, {"40", "B"}}, 0.7, "A"},
             Row{{{"70", "A"}, {"70", "B"}}, 0.7, "A"},
             Row{{{"0", "A"}, {"0", "B"}}, 0, "A"},
             Row{{{"150", "A"}, {"100", "B"}, {"200", "C"}}, 1, "A"},
             Row{{{"40", "A"}, {"70", "B"}, {"55", "C"}}, 0.7, "B"},
             Row{{{"40", "A"}, {"-5", "B"}}, 0.4, "A"},
             Row{{{"-0", "A"}, {"0", "B"}}, 0, "A"},
         }) {
        std::string list;
        for (const auto& [percent, name] : entries) {
            list += (list.empty() ? "" : ",") + scopedEntry(percent, name);
        }
        const auto usage = parsedEntries(list);
        EXPECT_EQ(usage.value().scoped, (Limit{fraction, {}})) << list;
        EXPECT_EQ(utf8(usage->scopedLabel), label) << list;
    }
}

TEST(OfficialUsage, AScopedAllowanceAloneIsEnough) {
    const auto usage = parsedEntries(scopedEntry("40", "Opus"));
    EXPECT_EQ(usage.value().scoped, (Limit{0.4, {}}));
    EXPECT_EQ(usage->session, std::nullopt);
    EXPECT_EQ(usage->weekly, std::nullopt);
}

TEST(OfficialUsage, TheNameOfAScopeIsWhateverTextStandsThere) {
    EXPECT_EQ(labelOf(R"({"model":{"display_name":"Opus"}})"), "Opus");
    EXPECT_EQ(labelOf(R"({"model":{"display_name":""}})"), "");
    EXPECT_EQ(labelOf(R"({"model":{"display_name":"<b>\u00e9\n\ud83d\ude00"}})"),
              "<b>\u00e9\n\U0001F600");
    EXPECT_EQ(labelOf("{\"model\":{\"display_name\":\"a\xFF\"}}"), "a\uFFFD");
}

TEST(OfficialUsage, AScopeMayBeWithoutAName) {
    for (const char* scope :
         {"null", "{}", "[]", R"("Opus")", R"({"model":null})", R"({"model":{}})",
          R"({"model":"Opus"})", R"({"model":[{"display_name":"Opus"}]})",
          R"({"model":{"display_name":null}})", R"({"model":{"display_name":7}})",
          R"({"model":{"display_name":true}})", R"({"model":{"display_name":["Opus"]}})",
          R"({"model":{"name":"Opus"}})", R"({"display_name":"Opus"})",
          R"([{"model":{"display_name":"Opus"}}])"}) {
        EXPECT_EQ(labelOf(scope), std::nullopt) << scope;
    }
    EXPECT_EQ(parsedEntries(R"({"kind":"weekly_scoped","percent":1})").value().scopedLabel,
              std::nullopt);
}

TEST(OfficialUsage, ANameGoesWithItsAllowance) {
    const std::string nameless = R"({"kind":"weekly_scoped","percent":70})";
    const auto replaced = parsedEntries(scopedEntry("40", "Opus") + ',' + nameless);
    EXPECT_EQ(replaced.value().scoped, (Limit{0.7, {}}));
    EXPECT_EQ(replaced->scopedLabel, std::nullopt);
    const auto kept = parsedEntries(nameless + ',' + scopedEntry("40", "Opus"));
    EXPECT_EQ(kept.value().scopedLabel, std::nullopt);
    const auto named = parsedEntries(
        R"({"kind":"session","percent":1,"scope":{"model":{"display_name":"Opus"}}})");
    EXPECT_EQ(named.value().scopedLabel, std::nullopt) << "only scoped ones have names";
}

TEST(OfficialUsage, TheListGoesBeforeTheOlderShape) {
    const std::string older = R"("five_hour":{"utilization":90},"seven_day":{"utilization":80})";
    const std::string weekly = R"({"kind":"weekly_all","percent":20})";
    const struct {
        std::string limits;
        double session;
        double weekly;
    } rows[] = {
        {'[' + sessionEntry("10") + ',' + weekly + ']', 0.1, 0.2},
        {'[' + sessionEntry("10") + ']', 0.1, 0.8},
        {'[' + weekly + ']', 0.9, 0.2},
        {'[' + sessionEntry("0") + ']', 0, 0.8},
        {'[' + sessionEntry("-1") + ']', 0.9, 0.8},
        {"[]", 0.9, 0.8},
        {"null", 0.9, 0.8},
        {R"("session")", 0.9, 0.8},
        {sessionEntry("10"), 0.9, 0.8},
        {R"([1,"session",null,[)" + sessionEntry("10") + "]]", 0.9, 0.8},
    };
    for (const auto& [limits, session, week] : rows) {
        const std::string list = R"("limits":)" + limits;
        for (const auto& [first, second] : {std::pair(list, older), std::pair(older, list)}) {
            const auto usage =
                parsed(std::string("{").append(first).append(",").append(second).append("}"));
            EXPECT_EQ(usage.value().session, (Limit{session, {}})) << limits;
            EXPECT_EQ(usage->weekly, (Limit{week, {}})) << limits;
        }
    }
}

TEST(OfficialUsage, WhatIsNoObjectInAListIsPassedOver) {
    const auto usage = parsedEntries(R"(null,1,"session",[],[{"kind":"session","percent":99}],)"
                                     + sessionEntry("10") + ",true");
    EXPECT_EQ(usage.value().session, (Limit{0.1, {}}));
}

TEST(OfficialUsage, TheOlderShapeMustBeObjects) {
    for (const char* value : {"null", "42.5", R"("42.5")", "[]", R"([{"utilization":42.5}])", "{}",
                              R"({"percent":42.5})", R"({"Utilization":42.5})"}) {
        const std::string response = std::string(R"({"five_hour":)") + value + R"(,"seven_day":)"
                                     + value + R"(,"limits":[)" + scopedEntry("1", "A") + "]}";
        const auto usage = parsed(response);
        EXPECT_EQ(usage.value().session, std::nullopt) << value;
        EXPECT_EQ(usage->weekly, std::nullopt) << value;
    }
}

TEST(OfficialUsage, ResetTimesMayBeFinerThanMilliseconds) {
    const std::pair<const char*, const char*> rows[] = {
        {"2025-06-02T14:00:00Z", "2025-06-02T14:00:00Z"},
        {"2025-06-02T14:00:00+02:00", "2025-06-02T12:00:00Z"},
        {"2025-06-02T14:00:00.5Z", "2025-06-02T14:00:00.5Z"},
        {"2025-06-02T14:00:00.123Z", "2025-06-02T14:00:00.123Z"},
        {"2025-06-02T14:00:00.1234Z", "2025-06-02T14:00:00.123Z"},
        {"2025-06-02T14:00:00.123456+00:00", "2025-06-02T14:00:00.123Z"},
        {"2025-06-02T14:00:00.123456789Z", "2025-06-02T14:00:00.123Z"},
        {"2025-06-02T14:00:00.999999Z", "2025-06-02T14:00:00.999Z"},
        {"2025-06-02T23:59:59.999999-05:30", "2025-06-03T05:29:59.999Z"},
        {"2025-06-02T14:00:00.000000Z", "2025-06-02T14:00:00Z"},
        {"2025-06-02T14:00:00.00000000000000000000000000000000001Z", "2025-06-02T14:00:00Z"},
    };
    for (const auto& [text, moment] : rows) {
        EXPECT_EQ(resetAt(text), at(moment)) << text;
    }
}

TEST(OfficialUsage, WhatIsNoTimeLeavesTheLimitWithoutOne) {
    for (const char* text : {"",
                             "soon",
                             "2025-06-02",
                             "2025-06-02T14:00:00",
                             "2025-06-02T14:00:00.",
                             "2025-06-02T14:00:00.123",
                             "2025-06-02T14:00:00.123456",
                             "2025-06-02T14:00:00.Z",
                             "2025-06-02T14:00:00.+00:00",
                             "2025-06-02T14:00:00.123456z",
                             "2025-06-02T14:00:00.123456 Z",
                             "2025-06-02T14:00:00.123456+0000",
                             "2025-06-02T14:00:00.123456.789Z",
                             "2025-06-02T14:00:00.123456Z.",
                             ".123456Z",
                             ".",
                             "2025-06.123456-02T14:00:00Z",
                             "2025-02-30T14:00:00.123456Z",
                             "2025-06-02T24:00:00.123456Z",
                             "2025-06-02T14:00:00,123456Z",
                             "1748872800.123456Z",
                             "2025-06-02T14:00:00.12\u0663456Z"}) {
        EXPECT_EQ(resetAt(text), std::nullopt) << text;
    }
    for (const char* value : {"null", "true", "1748872800", "1748872800.5", "{}", "[]",
                              R"(["2025-06-02T14:00:00Z"])"}) {
        EXPECT_EQ(resetOf(value), std::nullopt) << value;
    }
}

TEST(OfficialUsage, OfOlderShapeHasTheSameResetTimes) {
    const auto usage = parsed(
        R"({"five_hour":{"utilization":1,"resets_at":"2025-06-02T14:00:00.123456+00:00"},
            "seven_day":{"utilization":1,"resets_at":7}})");
    EXPECT_EQ(usage.value().session, (Limit{0.01, at("2025-06-02T14:00:00.123Z")}));
    EXPECT_EQ(usage->weekly, (Limit{0.01, {}}));
}

const std::string goodResponse =
    R"({"limits":[{"kind":"session","percent":42.5,"resets_at":"2025-06-02T14:00:00.123456Z"},)"
    R"({"kind":"weekly_scoped","percent":8,"scope":{"model":{"display_name":"Op\u00fcs"}}}],)"
    R"("seven_day":{"utilization":17,"resets_at":null}})";

TEST(OfficialUsage, OfACutResponseIsNone) {
    ASSERT_NE(parsed(goodResponse), std::nullopt);
    for (std::size_t length = 0; length < goodResponse.size(); ++length) {
        EXPECT_EQ(parsed(goodResponse.substr(0, length)), std::nullopt) << length;
    }
}

TEST(OfficialUsage, OfAResponseWithoutItsBeginningIsNone) {
    // What is left from an inner object's beginning on is never an object to its end.
    for (std::size_t start = 1; start < goodResponse.size(); ++start) {
        EXPECT_EQ(parsed(goodResponse.substr(start)), std::nullopt) << start;
    }
}

TEST(OfficialUsage, StaysWithinBoundsWhicheverByteIsDamaged) {
    for (std::size_t place = 0; place < goodResponse.size(); ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string damaged = goodResponse;
            damaged[place] = static_cast<char>(byte);
            const auto usage = parsed(damaged);
            if (!usage) {
                continue;
            }
            ASSERT_FALSE(usage->isEmpty()) << damaged;
            ASSERT_TRUE(usage->scoped || !usage->scopedLabel) << damaged;
            for (const auto& limit : {usage->session, usage->weekly, usage->scoped}) {
                ASSERT_TRUE(!limit || (limit->fraction >= 0 && limit->fraction <= 1)) << damaged;
            }
        }
    }
}

} // namespace
} // namespace sallowmere
