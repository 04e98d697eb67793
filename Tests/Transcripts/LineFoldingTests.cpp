// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Support/Texts.h"
#include "Support/Times.h"
#include "Support/TranscriptLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using namespace transcript;
using testing::Optional;
using testing::SizeIs;

const std::string early = "2026-11-20T10:00:00.000Z";
const std::string late = "2026-11-20T10:05:00.000Z";

std::optional<std::string> sessionIdOf(const std::vector<std::string>& lines) {
    return utf8(folded(lines).sessionId);
}

TEST(LineFolding, KnowsNothingWithoutLines) {
    EXPECT_EQ(folded({}), ParsedTail());
    const ParsedTail tail;
    EXPECT_FALSE(tail.sessionId || tail.title || tail.cwd || tail.gitBranch || tail.model
                 || tail.lastPrompt || tail.ask || tail.plan || tail.todo || tail.lastStopAt
                 || tail.lastActivityEntryAt);
    EXPECT_TRUE(tail.events.empty());
    EXPECT_FALSE(tail.askAnswered);
    EXPECT_FALSE(tail.planAnswered);
}

TEST(LineFolding, ConsidersOnlyLinesWithAMarkAsTheAssistantSpellsIt) {
    for (const std::string line : {
             R"({"type":"user","sessionId":"s"})",
             R"({"type":"assistant","sessionId":"s"})",
             R"({"type":"ai-title","sessionId":"s"})",
             R"({"type":"system","subtype":"stop_hook_summary","sessionId":"s"})",
             R"({"type":"attachment","about":"stop_hook_summary","sessionId":"s"})",
             R"({"type":"attachment","about":{"type":"user"},"sessionId":"s"})",
         }) {
        EXPECT_THAT(sessionIdOf({line}), Optional(std::string("s"))) << line;
    }
    for (const std::string line : {
             R"({"type": "user","sessionId":"s"})",
             R"({"type" :"assistant","sessionId":"s"})",
             R"({"type":"summary","sessionId":"s"})",
             R"({"type":"attachment","sessionId":"s"})",
             R"({"type":"system","subtype":"turn_duration","sessionId":"s"})",
             R"({"type":"us\u0065r","sessionId":"s"})",
         }) {
        EXPECT_EQ(sessionIdOf({line}), std::nullopt) << line;
    }
}

TEST(LineFolding, SkipsADamagedLineAlone) {
    for (const std::string damaged : {
             R"({"type":"user",)",
             R"({"type":"user","message":{"content":"broken"},})",
             R"({"type":"user","message":{"content":"a"}} x)",
             R"({"type":"user","n":01,"message":{"content":"broken"}})",
             R"({"type":"user","n":1e999,"message":{"content":"broken"}})",
             R"({"type":"user","message":{"content":"\ud800"}})",
             R"("type":"user")",
             R"([{"type":"user","message":{"content":"broken"}}])",
             R"("\"type\":\"user\"")",
         }) {
        const ParsedTail tail = folded({prompt("before"), damaged, title("After")});
        EXPECT_THAT(utf8(tail.lastPrompt), Optional(std::string("before"))) << damaged;
        EXPECT_THAT(utf8(tail.title), Optional(std::string("After"))) << damaged;
    }
}

TEST(LineFolding, LosesNoLineToALongInteger) {
    EXPECT_THAT(
        utf8(folded({prompt("Hello", R"("n":123456789012345678901234567890,)")}).lastPrompt),
        Optional(std::string("Hello")));
}

TEST(LineFolding, KeepsTheLatestTitle) {
    EXPECT_THAT(utf8(folded({title("One"), title("Two")}).title), Optional(std::string("Two")));
    EXPECT_THAT(utf8(folded({title("One"), title("")}).title), Optional(std::string("One")));
    EXPECT_THAT(
        utf8(folded({title("One"), R"({"type":"ai-title","aiTitle":7})", R"({"type":"ai-title"})"})
                 .title),
        Optional(std::string("One")));
    EXPECT_EQ(folded({title("")}).title, std::nullopt);
}

TEST(LineFolding, TakesTheTimeOfTheLastActivity) {
    EXPECT_EQ(folded({prompt("a", time(early))}).lastActivityEntryAt, at(early));
    EXPECT_EQ(folded({assistant(prose("a"), time(early))}).lastActivityEntryAt, at(early));
    EXPECT_EQ(
        folded({prompt("a", time(late)), assistant(prose("b"), time(early))}).lastActivityEntryAt,
        at(early));
    EXPECT_EQ(
        folded({assistant(prose("a"), time(early)), prompt("b", time(late))}).lastActivityEntryAt,
        at(late));
}

TEST(LineFolding, KeepsTheTimeOfActivityWhenALineHasNone) {
    for (const std::string& members : {std::string(), time("yesterday"), time("2026-11-20"),
                                       std::string(R"("timestamp":1763632800,)")}) {
        EXPECT_EQ(folded({prompt("a", time(early)), prompt("b", members)}).lastActivityEntryAt,
                  at(early))
            << members;
        EXPECT_EQ(
            folded({prompt("a", time(early)), assistant(prose("b"), members)}).lastActivityEntryAt,
            at(early))
            << members;
    }
}

TEST(LineFolding, CountsASideChainAsActivity) {
    const std::string members = R"("isSidechain":true,)" + time(late);
    EXPECT_EQ(folded({prompt("a", time(early)), prompt("b", members)}).lastActivityEntryAt,
              at(late));
    EXPECT_EQ(
        folded({prompt("a", time(early)), assistant(prose("b"), members)}).lastActivityEntryAt,
        at(late));
}

TEST(LineFolding, CountsNoOtherLineAsActivity) {
    EXPECT_EQ(folded({turnEnd(time(late)),
                      R"({"type":"ai-title","aiTitle":"x","timestamp":")" + late + R"("})"})
                  .lastActivityEntryAt,
              std::nullopt);
}

TEST(LineFolding, TakesTheTimeOfTheLastTurnEnd) {
    EXPECT_EQ(folded({turnEnd(time(early)), turnEnd(time(late))}).lastStopAt, at(late));
    EXPECT_EQ(folded({turnEnd(time(late)), turnEnd(time(early))}).lastStopAt, at(early));
}

TEST(LineFolding, ForgetsAnEarlierTurnEndWhenALaterOneHasNoTime) {
    EXPECT_EQ(folded({turnEnd(time(early)), turnEnd("")}).lastStopAt, std::nullopt);
    EXPECT_EQ(folded({turnEnd(time(early)), turnEnd(time("soon"))}).lastStopAt, std::nullopt);
    EXPECT_EQ(folded({turnEnd(time(early)), turnEnd(R"("timestamp":1,)")}).lastStopAt,
              std::nullopt);
}

TEST(LineFolding, TakesNoOtherLineForATurnEnd) {
    for (const std::string line : {
             R"({"type":"system","subtype":"stop_hook_summary2","timestamp":"%"})",
             R"({"type":"system","subtype":"Stop_hook_summary","note":"stop_hook_summary"})",
             R"({"type":"system","note":"stop_hook_summary"})",
             R"({"type":"attachment","subtype":"stop_hook_summary"})",
             R"({"subtype":"stop_hook_summary"})",
             R"({"type":["system"],"subtype":"stop_hook_summary"})",
         }) {
        EXPECT_EQ(folded({turnEnd(time(early)), line}).lastStopAt, at(early)) << line;
    }
}

TEST(LineFolding, KeepsTheFirstSessionIdentifier) {
    EXPECT_THAT(
        sessionIdOf({prompt("a"), title("no identifier"), prompt("b", R"("sessionId":"first",)"),
                     assistant(prose("c"), R"("sessionId":"second",)")}),
        Optional(std::string("first")));
    EXPECT_THAT(
        sessionIdOf({prompt("a", R"("sessionId":7,)"), prompt("b", R"("sessionId":"text",)")}),
        Optional(std::string("text")));
    EXPECT_THAT(sessionIdOf({prompt("a", R"("session_id":"older","sessionId":"own",)")}),
                Optional(std::string("own")));
}

TEST(LineFolding, TakesTheSessionIdentifierOfAnyConsideredLine) {
    for (const std::string& line : {
             prompt("a", R"("isSidechain":true,"sessionId":"s",)"),
             turnEnd(R"("sessionId":"s",)"),
             std::string(R"({"type":7,"about":{"type":"user"},"sessionId":"s"})"),
             std::string(R"({"about":{"type":"user"},"sessionId":"s"})"),
         }) {
        EXPECT_THAT(sessionIdOf({line}), Optional(std::string("s"))) << line;
    }
}

TEST(LineFolding, GivesALineOfAnotherTypeNoMeaning) {
    const ParsedTail tail = folded(
        {R"({"type":"attachment","aiTitle":"x","cwd":"/x","message":{"model":"m",)"
         R"("content":[{"type":"text","text":"x"}]},"note":{"type":"user","more":{"type":"assistant"}},)"
         R"("timestamp":"2026-11-20T10:00:00Z"})"});
    EXPECT_EQ(tail, ParsedTail());
}

TEST(LineFolding, KeepsTheTwelveNewestEvents) {
    std::vector<std::string> lines;
    for (int i = 1; i <= 20; ++i) {
        lines.push_back(assistant(prose("text " + std::to_string(i))));
    }
    const ParsedTail tail = folded(lines);
    ASSERT_THAT(tail.events, SizeIs(12));
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(utf8(tail.events[i].label), "text " + std::to_string(i + 9));
        EXPECT_EQ(utf8(tail.events[i].id), std::to_string(i + 9) + ".0");
    }
    lines.resize(12);
    EXPECT_THAT(folded(lines).events, SizeIs(12));
    EXPECT_EQ(utf8(folded(lines).events.front().label), "text 1");
}

TEST(LineFolding, KeepsWhatDroppedEventsTold) {
    std::vector<std::string> lines{assistant(question("Which?"))};
    for (int i = 0; i < 20; ++i) {
        lines.push_back(assistant(prose("more")));
    }
    EXPECT_EQ(utf8(folded(lines).ask->question), "Which?");
}

} // namespace
} // namespace sallowmere
