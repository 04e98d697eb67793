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
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

std::vector<std::string> labelsOf(const std::string& line) {
    std::vector<std::string> labels;
    for (const LogEvent& event : folded({line}).events) {
        labels.push_back(utf8(event.label));
    }
    return labels;
}

std::optional<std::string> modelAfter(const std::string& message) {
    return utf8(
        folded({assistantMessage(R"("model":"claude-haiku-4-5")"), assistantMessage(message)})
            .model);
}

TEST(AssistantLine, TellsTheModel) {
    EXPECT_THAT(modelAfter(R"("model":"claude-opus-4-1")"),
                Optional(std::string("claude-opus-4-1")));
    EXPECT_THAT(modelAfter(R"("model":"")"), Optional(std::string("")));
}

TEST(AssistantLine, OfAPlaceholderModelKeepsTheEarlierOne) {
    for (const char* message : {R"("model":"<synthetic>")", R"("model":"<")",
                                R"("model":"<\u0338")", R"("model":7)", R"("content":[])"}) {
        EXPECT_THAT(modelAfter(message), Optional(std::string("claude-haiku-4-5"))) << message;
    }
}

TEST(AssistantLine, OfAPlaceholderModelStillTellsWhatItSays) {
    EXPECT_THAT(labelsOf(assistantMessage(
                    R"("model":"<synthetic>","content":[{"type":"text","text":"API Error"}])")),
                ElementsAre("API Error"));
}

TEST(AssistantLine, WithoutMessageOrOfASideChainTellsNothing) {
    for (const std::string& line : {
             assistant(prose("side") + ',' + question("Which?"), R"("isSidechain":true,)"),
             std::string(R"({"type":"assistant"})"),
             std::string(R"({"type":"assistant","message":"text"})"),
             std::string(R"({"type":"assistant","message":[{"model":"m"}]})"),
         }) {
        EXPECT_EQ(folded({line}), ParsedTail()) << line;
    }
    EXPECT_THAT(labelsOf(assistant(prose("own"), R"("isSidechain":"true",)")), ElementsAre("own"));
}

TEST(AssistantLine, AnswersNothing) {
    const ParsedTail tail =
        folded({assistant(question("Which?")), assistant(plan("Do it")), assistant(prose("Hm"))});
    EXPECT_FALSE(tail.askAnswered);
    EXPECT_FALSE(tail.planAnswered);
}

TEST(AssistantLine, TellsNoDirectory) {
    EXPECT_FALSE(folded({assistant(prose("a"), R"("cwd":"/x","gitBranch":"main",)")}).cwd);
    EXPECT_FALSE(folded({assistant(prose("a"), R"("cwd":"/x","gitBranch":"main",)")}).gitBranch);
}

TEST(AssistantLine, MakesAnEventOfEachBlockOfProseOrTool) {
    const ParsedTail tail =
        folded({prompt("x"), "skipped",
                assistant(R"({"type":"thinking","thinking":"hm"},)" + prose("Hello") + ','
                              + toolUse("Read", R"({"file_path":"/a/b/notes.txt"})"),
                          time("2026-11-20T10:00:00.500Z"))});
    const Timestamp time = at("2026-11-20T10:00:00.5Z");
    const auto kinds = std::vector<LogEvent>{
        {QStringLiteral("3.1"), LogEvent::Kind::text, QStringLiteral("Hello"), std::nullopt, time},
        {QStringLiteral("3.2"), LogEvent::Kind::tool, QStringLiteral("Read(notes.txt)"),
         std::nullopt, time}};
    EXPECT_EQ(tail.events, kinds);
}

TEST(AssistantLine, CountsTheObjectsOfTheContentOnly) {
    const ParsedTail tail = folded({assistant(R"("x",)" + prose("a") + ",null," + prose("b"))});
    ASSERT_THAT(tail.events, SizeIs(2));
    EXPECT_EQ(utf8(tail.events[0].id), "1.0");
    EXPECT_EQ(utf8(tail.events[1].id), "1.1");
}

TEST(AssistantLine, LeavesTheTimeOfEventsAbsentWhenItHasNone) {
    const ParsedTail tail =
        folded({assistant(prose("a"), time("2026-11-20T10:00:00Z")), assistant(prose("b")),
                assistant(toolUse("Bash"), time("later"))});
    ASSERT_THAT(tail.events, SizeIs(3));
    EXPECT_TRUE(tail.events[0].timestamp);
    EXPECT_FALSE(tail.events[1].timestamp);
    EXPECT_FALSE(tail.events[2].timestamp);
}

TEST(AssistantLine, LabelsProseWithItsFirstLine) {
    struct Row {
        std::string text;
        std::string label;
    };
    std::string accents;
    for (int i = 0; i < 120; ++i) {
        accents += "e\xCC\x81";
    }
    for (const Row& row : {
             Row{"\n\nHello\nworld", "Hello"},
             Row{" \t\r\nHello \nworld", "Hello "},
             Row{"Hello", "Hello"},
             Row{"Hello  \n", "Hello"},
             Row{"Hello\r\nworld", "Hello\r"},
             Row{"Hello\rworld", "Hello\rworld"},
             Row{"\xE3\x80\x80Hello\xC2\xA0", "Hello"},
             Row{"\xE2\x80\x8BHello", "\xE2\x80\x8BHello"},
             Row{"\xEF\xBB\xBFHello", "\xEF\xBB\xBFHello"},
             Row{std::string(120, 'x'), std::string(120, 'x')},
             // Cut without an ellipsis.
             Row{std::string(121, 'x'), std::string(120, 'x')},
             Row{std::string(500, 'x') + "\ny", std::string(120, 'x')},
             Row{accents, accents},
             Row{accents + "x", accents},
         }) {
        EXPECT_THAT(labelsOf(assistant(prose(row.text))), ElementsAre(row.label)) << row.text;
    }
}

TEST(AssistantLine, SkipsBlocksWithoutMeaning) {
    for (const std::string& block : {
             prose(""),
             prose(" \n\t\xC2\xA0\xE2\x80\xA9 "),
             std::string(R"({"type":"text"})"),
             std::string(R"({"type":"text","text":["x"]})"),
             std::string(R"({"text":"x"})"),
             std::string(R"({"type":7,"text":"x"})"),
             std::string(R"({"type":"thinking","text":"x"})"),
             std::string(R"({"type":"server_tool_use","name":"x"})"),
             std::string(R"({"type":"tool_use"})"),
             std::string(R"({"type":"tool_use","name":7,"input":{"command":"ls"}})"),
             std::string(R"("text")"),
         }) {
        EXPECT_THAT(labelsOf(assistant(block)), IsEmpty()) << block;
        EXPECT_THAT(labelsOf(assistant(block + ',' + prose("next"))), ElementsAre("next")) << block;
    }
}

TEST(AssistantLine, HasNoBlocksUnlessItsContentIsAList) {
    EXPECT_THAT(labelsOf(assistantMessage(R"("content":"text")")), IsEmpty());
    EXPECT_THAT(labelsOf(assistantMessage(R"("content":{"type":"text","text":"x"})")), IsEmpty());
    EXPECT_THAT(labelsOf(assistantMessage(R"("content":null)")), IsEmpty());
}

TEST(AssistantLine, TakesAToolWithoutAnInput) {
    EXPECT_THAT(labelsOf(assistant(R"({"type":"tool_use","name":"Bash"},)"
                                   R"({"type":"tool_use","name":"Read","input":"x"},)"
                                   R"({"type":"tool_use","name":"","input":["x"]})")),
                ElementsAre("Bash", "Read", ""));
}

} // namespace
} // namespace sallowmere
