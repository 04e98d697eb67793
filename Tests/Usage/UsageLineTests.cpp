// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageTest.h"

namespace sallowmere {
namespace {

/// What one line of a transcript counts.
class UsageLineTest : public UsageTest {
protected:
    UsageLineTest() {
        settings.weightInput = 1;
        settings.weightOutput = 1;
        settings.weightCacheCreate = 1;
        settings.weightCacheRead = 1;
    }

    double tokensOf(const std::string& content) {
        write("session.jsonl", content);
        return computeAnew().weekly.weightedTokens;
    }

    double tokensWith(const Message& message) { return tokensOf(lineOf(message)); }
    double tokensOfUsage(const std::string& usage) { return tokensWith({.usage = usage}); }

    double fableTokensOf(const std::string& model) {
        write("session.jsonl", lineOf({.model = model}));
        return computeAnew().weeklyFable.value().weightedTokens;
    }
};

TEST_F(UsageLineTest, EachKindOfTokenHasItsWeight) {
    settings.weightInput = 2;
    settings.weightOutput = 30;
    settings.weightCacheCreate = 400;
    settings.weightCacheRead = 5'000;
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":1,"output_tokens":1,)"
                            R"("cache_creation_input_tokens":1,"cache_read_input_tokens":1})"),
              5'432);
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":3})"), 6);
    EXPECT_EQ(tokensOfUsage(R"({"output_tokens":3})"), 90);
    EXPECT_EQ(tokensOfUsage(R"({"cache_creation_input_tokens":3})"), 1'200);
    EXPECT_EQ(tokensOfUsage(R"({"cache_read_input_tokens":3})"), 15'000);
}

TEST_F(UsageLineTest, TheWeightsOfASettingsRecordAreTheOnesThatCount) {
    const Settings standard;
    settings.weightInput = standard.weightInput;
    settings.weightOutput = standard.weightOutput;
    settings.weightCacheCreate = standard.weightCacheCreate;
    settings.weightCacheRead = standard.weightCacheRead;
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":1000,"output_tokens":100,)"
                            R"("cache_creation_input_tokens":40,"cache_read_input_tokens":10})"),
              1'000 + 500 + 50 + 1);
}

TEST_F(UsageLineTest, TheKindsAreSummedInAFixedOrder) {
    // In another order the ones would not be lost beside the huge count.
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":1e16,"output_tokens":0,)"
                            R"("cache_creation_input_tokens":1,"cache_read_input_tokens":1})"),
              1e16);
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":1e16,"output_tokens":1,)"
                            R"("cache_creation_input_tokens":1,"cache_read_input_tokens":-1e16})"),
              0);
    EXPECT_EQ(
        tokensOfUsage(R"({"input_tokens":1,"output_tokens":1,)"
                      R"("cache_creation_input_tokens":1e16,"cache_read_input_tokens":-1e16})"),
        2);
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":1e16,"output_tokens":-1e16,)"
                            R"("cache_creation_input_tokens":1,"cache_read_input_tokens":1})"),
              2);
}

TEST_F(UsageLineTest, ACountIsWhateverNumberIsThere) {
    const std::pair<const char*, double> counts[] = {
        {"0", 0},
        {"12", 12},
        {"12.5", 12.5},
        {"1.5e3", 1'500},
        {"-7", -7},
        {"-0", 0},
        {"true", 1},
        {"false", 0},
        {"null", 0},
        {R"("12")", 0},
        {R"("true")", 0},
        {"[12]", 0},
        {R"({"count":12})", 0},
        {"9223372036854775808", 9223372036854775808.0},
        {"18446744073709551616", 18446744073709551616.0},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"-123456789012345678901234567890", -123456789012345678901234567890.0},
    };
    for (const auto& [count, tokens] : counts) {
        EXPECT_EQ(tokensOfUsage(inputTokens(count)), tokens) << count;
    }
}

TEST_F(UsageLineTest, ABadCountLeavesTheOthers) {
    EXPECT_EQ(tokensOfUsage(R"({"input_tokens":"many","output_tokens":5})"), 5);
}

TEST_F(UsageLineTest, AUsageWithoutCountsIsNothingButUsesUpItsId) {
    EXPECT_EQ(tokensOfUsage("{}"), 0);
    EXPECT_EQ(tokensOf(lineOf({.usage = "{}"}) + lineOf({.usage = inputTokens("9")})), 0);
    EXPECT_EQ(tokensOf(lineOf({.usage = R"({"server_tool_use":{"input_tokens":9}})"})), 0);
}

TEST_F(UsageLineTest, AMessageCountsOnceHoweverManyLinesRepeatIt) {
    EXPECT_EQ(tokensOf(messageLine("a", 3) + messageLine("a", 50) + messageLine("b", 700)
                       + messageLine("a", 9'000)),
              703)
        << "its first line counts";
}

TEST_F(UsageLineTest, ALineThatDoesNotCountLeavesItsIdForALaterOne) {
    const std::string tooOld = quoted(spelled(horizon()));
    const Message useless[] = {
        {.time = tooOld},
        {.time = R"("soon")"},
        {.usage = "7"},
    };
    for (const Message& message : useless) {
        EXPECT_EQ(tokensOf(lineOf(message) + lineOf({.usage = inputTokens("4")})), 4)
            << message.time << message.usage;
    }
}

TEST_F(UsageLineTest, TheIdMustBeAString) {
    for (const char* id : {"1", "null", "true", "{}", R"(["msg_1"])"}) {
        EXPECT_EQ(tokensWith({.id = id}), 0) << id;
    }
    EXPECT_EQ(tokensWith({.id = R"("")"}), 1) << "an empty one is one";
    EXPECT_EQ(tokensOf(lineOf({.id = R"("msg_1")"}) + lineOf({.id = R"("msg\u005f1")"})), 1)
        << "however it is spelled";
}

TEST_F(UsageLineTest, TheUsageMustBeAnObject) {
    for (const char* usage : {"5", "null", "[]", R"("input_tokens")", R"([{"input_tokens":1}])"}) {
        EXPECT_EQ(tokensWith({.usage = usage}), 0) << usage;
    }
}

TEST_F(UsageLineTest, TheTimeMustBeWellFormed) {
    const std::pair<const char*, bool> times[] = {
        {R"("2026-06-10T11:00:00.123Z")", true},
        {R"("2026-06-10T11:00:00Z")", true},
        {R"("2026-06-10T13:00:00.5+02:00")", true},
        {R"("2026-06-10 11:00:00Z")", false},
        {R"("2026-06-10T11:00:00")", false},
        {R"("2026-06-31T11:00:00Z")", false},
        {R"("")", false},
        {"1781089200", false},
        {"null", false},
        {R"({"at":"2026-06-10T11:00:00Z"})", false},
    };
    for (const auto& [time, counts] : times) {
        EXPECT_EQ(tokensWith({.time = time}), counts ? 1 : 0) << time;
    }
}

TEST_F(UsageLineTest, LinesOfAnotherMakeAreSkipped) {
    const char* lines[] = {
        // Another type, although the marks are there.
        R"({"type":"user","toolUseResult":{"type":"assistant"},"message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"kind":{"type":"assistant"},"message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"type":["assistant"],"inner":{"type":"assistant"},"message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})",
        // No message, or none that is an object.
        R"({"type":"assistant","id":"a","usage":{"input_tokens":1},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"type":"assistant","message":"usage","usage":{"input_tokens":1},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"type":"assistant","message":[{"id":"a","usage":{"input_tokens":1}}],"timestamp":"2026-06-10T11:00:00Z"})",
        // The id, the usage or the time in the wrong place.
        R"({"type":"assistant","id":"a","message":{"usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"type":"assistant","usage":{"input_tokens":1},"message":{"id":"a"},"timestamp":"2026-06-10T11:00:00Z"})",
        R"({"type":"assistant","message":{"id":"a","usage":{"input_tokens":1},"timestamp":"2026-06-10T11:00:00Z"}})",
        // No object, or no JSON.
        R"([{"type":"assistant","message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"}])",
        R"({"type":"assistant","message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z")",
        R"({"type":"assistant","message":{"id":"a","usage":{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"}})",
        R"("type":"assistant""usage")",
    };
    for (const std::string line : lines) {
        EXPECT_EQ(tokensOf(line + "\n" + messageLine("good", 10)), 10) << line;
    }
}

TEST_F(UsageLineTest, BothMarksMustBeThereLetterByLetter) {
    const auto line = [](const std::string& type, const std::string& usage) {
        return '{' + type + R"(,"message":{"id":"a",)" + usage
               + R"(:{"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})" + "\n";
    };
    EXPECT_EQ(tokensOf(line(R"("type":"assistant")", R"("usage")")), 1);
    EXPECT_EQ(tokensOf(line(R"("type":"assistant")", R"("usage" )")), 1);
    EXPECT_EQ(tokensOf(line(R"("type": "assistant")", R"("usage")")), 0);
    EXPECT_EQ(tokensOf(line(R"("type" :"assistant")", R"("usage")")), 0);
    EXPECT_EQ(tokensOf(line(R"("type":"\u0061ssistant")", R"("usage")")), 0);
    EXPECT_EQ(tokensOf(line(R"("type":"assistant")", R"("\u0075sage")")), 0);
}

TEST_F(UsageLineTest, TheMarksMayStandAnywhereInTheLine) {
    EXPECT_EQ(tokensOf(R"({"type" : "assistant","inner":{"type":"assistant"},"message":{"id":"a",)"
                       R"("usage" : {"input_tokens":1}},"timestamp":"2026-06-10T11:00:00Z"})"
                       "\n"),
              1);
}

TEST_F(UsageLineTest, MarksOnDifferentLinesDoNotMakeOne) {
    EXPECT_EQ(tokensOf("{\"type\":\"assistant\"}\n{\"usage\":{\"input_tokens\":1}}\n"), 0);
}

TEST_F(UsageLineTest, TheFableFamilyIsKnownByThreePartsOfNamesInAnyLetterCase) {
    const std::pair<const char*, bool> models[] = {
        {R"("claude-opus-4-1")", true},
        {R"("Claude-OPUS-4-1")", true},
        {R"("claude-fable-1")", true},
        {R"("Fable")", true},
        {R"("FABLES")", true},
        {R"("us.anthropic.Mythos-v1:0")", true},
        {R"("mythos-opus-fable")", true},
        {R"("claude-sonnet-4-5")", false},
        {R"("claude-haiku-4-5")", false},
        {R"("o-p-u-s")", false},
        {R"("opu")", false},
        {R"("fab le")", false},
        {R"("<synthetic>")", false},
        {R"("")", false},
        {"null", false},
        {"7", false},
        {R"(["opus"])", false},
    };
    for (const auto& [model, isFable] : models) {
        EXPECT_EQ(fableTokensOf(model), isFable ? 1 : 0) << model;
        EXPECT_EQ(tokensWith({.model = model}), 1) << model;
    }
}

TEST_F(UsageLineTest, AMessageThatNamesNoModelCountsForAllModelsOnly) {
    write("session.jsonl", R"({"type":"assistant","message":{"id":"a","usage":{"input_tokens":1}},)"
                           R"("timestamp":"2026-06-10T11:00:00Z"})"
                           "\n");
    EXPECT_EQ(weeklyTokens(), 1);
    EXPECT_EQ(fableTokens(), 0);
}

TEST_F(UsageLineTest, NeighboursOfDifferentModelsAreToldApart) {
    const auto line = [](const char* id, const char* model, const char* tokens) {
        return lineOf({.id = quoted(id), .model = quoted(model), .usage = inputTokens(tokens)});
    };
    write("a.jsonl", line("a", "opus", "1") + line("b", "sonnet", "10") + line("c", "OPUS", "100")
                         + line("d", "", "1000") + line("e", "fable", "10000"));
    write("b.jsonl", line("f", "sonnet", "100000") + line("g", "mythos", "1000000"));
    EXPECT_EQ(fableTokens(), 1'010'101);
    EXPECT_EQ(weeklyTokens(), 1'111'111);
}

TEST(FableFamily, HoldsLowerCasedNamesWithOneOfThreeParts) {
    EXPECT_TRUE(isFableFamily("claude-opus-4-1"));
    EXPECT_TRUE(isFableFamily("fable"));
    EXPECT_TRUE(isFableFamily("xmythosx"));
    EXPECT_FALSE(isFableFamily("OPUS"));
    EXPECT_FALSE(isFableFamily("claude-sonnet-4-5"));
    EXPECT_FALSE(isFableFamily(""));
}

} // namespace
} // namespace sallowmere
