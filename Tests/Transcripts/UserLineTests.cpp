// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Support/Texts.h"
#include "Support/TranscriptLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using namespace transcript;
using testing::Optional;

/// What the session waits for before the line under test.
const std::vector<std::string> pending{assistant(question("Which?")), assistant(plan("Do it"))};

ParsedTail afterPending(const std::string& line) {
    std::vector<std::string> lines = pending;
    lines.push_back(line);
    return folded(lines);
}

bool answersBoth(const std::string& line) {
    const ParsedTail tail = afterPending(line);
    EXPECT_EQ(tail.askAnswered, tail.planAnswered) << line;
    return tail.askAnswered;
}

std::optional<std::string> promptAfter(const std::string& line) {
    return utf8(folded({prompt("earlier"), line}).lastPrompt);
}

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(UserLine, TellsDirectoryAndBranch) {
    const ParsedTail tail = folded({prompt("a", R"("cwd":"/one","gitBranch":"main",)"),
                                    prompt("b", R"("cwd":"/two","gitBranch":"",)"),
                                    prompt("c", R"("cwd":7,"gitBranch":null,)"), prompt("d")});
    EXPECT_THAT(utf8(tail.cwd), Optional(std::string("/two")));
    EXPECT_THAT(utf8(tail.gitBranch), Optional(std::string("")));
}

TEST(UserLine, OfASideChainTellsNothing) {
    const std::string members = R"("isSidechain":true,"cwd":"/side","gitBranch":"side",)";
    ParsedTail expected = folded(pending);
    EXPECT_EQ(afterPending(prompt("side", members)), expected);
    EXPECT_EQ(afterPending(toolResult(members)), expected);
}

TEST(UserLine, CountsUnlessItsSideChainMarkIsTrueItself) {
    for (const std::string members : {R"("isSidechain":false,)", R"("isSidechain":1,)",
                                      R"("isSidechain":"true",)", R"("isSidechain":null,)"}) {
        EXPECT_THAT(promptAfter(prompt("later", members)), Optional(std::string("later")));
    }
}

TEST(UserLine, AnswersWhatIsPending) {
    EXPECT_TRUE(answersBoth(prompt("Yes")));
    EXPECT_TRUE(answersBoth(toolResult()));
    EXPECT_TRUE(answersBoth(prompt("<command-name>/clear</command-name>")));
    EXPECT_TRUE(answersBoth(prompt("[Request interrupted by user]")));
    EXPECT_TRUE(answersBoth(prompt("")));
    EXPECT_TRUE(answersBoth(R"({"type":"user"})"));
    EXPECT_TRUE(answersBoth(R"({"type":"user","message":"text"})"));
    EXPECT_TRUE(answersBoth(prompt("hidden", R"("isMeta":true,)")));
    EXPECT_TRUE(answersBoth(prompt("hidden", R"("isCompactSummary":true,)")));
    EXPECT_TRUE(answersBoth(prompt("hidden", R"("isVisibleInTranscriptOnly":true,)")));
}

TEST(UserLine, AnswersNothingThatWasNotAsked) {
    const ParsedTail before = folded({prompt("a")});
    EXPECT_FALSE(before.askAnswered);
    EXPECT_FALSE(before.planAnswered);
    const ParsedTail asked = folded({assistant(question("Which?")), prompt("a")});
    EXPECT_TRUE(asked.askAnswered);
    EXPECT_FALSE(asked.planAnswered);
    const ParsedTail planned = folded({assistant(plan("Do it")), prompt("a")});
    EXPECT_FALSE(planned.askAnswered);
    EXPECT_TRUE(planned.planAnswered);
}

TEST(UserLine, FromAnotherSessionIsNoAnswerAndNoPrompt) {
    for (const std::string& text : {
             std::string("Another Claude session sent a message: hello"),
             std::string("<teammate-message from=\"x\">hello"),
             std::string("Note <teammate-message>"),
             std::string(143, 'x') + "<teammate-message",
             // Characters are counted as the user perceives them.
             repeated("e\xCC\x81", 143) + "<teammate-message",
         }) {
        EXPECT_FALSE(answersBoth(prompt(text))) << text;
        EXPECT_THAT(promptAfter(prompt(text)), Optional(std::string("earlier"))) << text;
    }
    EXPECT_THAT(
        utf8(folded({prompt("Another Claude session sent a message", R"("cwd":"/x",)")}).cwd),
        Optional(std::string("/x")));
}

TEST(UserLine, IsComparedByCodePoints) {
    // A combining mark behind the last letter makes another character of it, but not another text.
    const std::string mark = "\xCC\x81";
    EXPECT_FALSE(answersBoth(prompt("Another Claude session sent a message" + mark)));
    EXPECT_FALSE(answersBoth(prompt("<teammate-message" + mark)));
    for (const std::string& text : {"<" + mark, "[Request interrupted by user" + mark}) {
        EXPECT_THAT(promptAfter(prompt(text)), Optional(std::string("earlier"))) << text;
    }
}

TEST(UserLine, IsTheUsersOwnUnlessItBeginsAsAMessage) {
    for (const std::string& content : {
             json("another Claude session sent a message"),
             json(" Another Claude session sent a message"),
             json(std::string(144, 'x') + "<teammate-message"),
             json("<Teammate-message"),
             // Only a content that is a string is a message.
             std::string(R"([{"type":"text","text":"Another Claude session sent a message"}])"),
             std::string(R"([{"type":"text","text":"see <teammate-message"}])"),
         }) {
        EXPECT_TRUE(answersBoth(user(content))) << content;
    }
    EXPECT_THAT(
        promptAfter(user(R"([{"type":"text","text":"Another Claude session sent a message"}])")),
        Optional(std::string("Another Claude session sent a message")));
}

TEST(UserLine, ThatNobodyTypedIsNoPrompt) {
    for (const std::string& line : {
             prompt("hidden", R"("isMeta":true,)"),
             prompt("hidden", R"("isCompactSummary":true,)"),
             prompt("hidden", R"("isVisibleInTranscriptOnly":true,)"),
             prompt("<command-name>/clear</command-name>"),
             prompt("  \n<system-reminder>"),
             prompt("<"),
             prompt("[Request interrupted by user]"),
             prompt("[Request interrupted by user for tool use]"),
             prompt(" \n\t\r "),
             prompt(""),
             prompt("\xC2\xA0\xE3\x80\x80\xE2\x80\xA8"),
             toolResult(),
             user("7"),
             user("null"),
             user(R"({"type":"text","text":"hidden"})"),
             user("[]"),
             user(R"([{"type":"image"}])"),
             user(R"(["hidden"])"),
             user(R"([{"type":"text","text":7}])"),
             user(R"([{"text":"hidden"}])"),
             user(R"([{"type":"text","text":"<wrapped"},{"type":"text","text":"hidden"}])"),
             user(R"([{"type":"text","text":"hidden"},{"type":"tool_result"}])"),
             user(R"([{"type":"tool_result"},{"type":"text","text":"hidden"}])"),
             std::string(R"({"type":"user"})"),
             std::string(R"({"type":"user","message":"hidden"})"),
         }) {
        EXPECT_THAT(promptAfter(line), Optional(std::string("earlier"))) << line;
    }
}

TEST(UserLine, ThatTheUserTypedIsThePrompt) {
    struct Row {
        std::string line;
        std::string prompt;
    };
    for (const Row& row : {
             Row{prompt("later"), "later"},
             Row{prompt("later", R"("isMeta":false,"isCompactSummary":"true",)"), "later"},
             Row{prompt("later", R"("isVisibleInTranscriptOnly":1,)"), "later"},
             Row{prompt("a < b"), "a < b"},
             Row{prompt("[request interrupted by user]"), "[request interrupted by user]"},
             Row{prompt("see [Request interrupted by user]"), "see [Request interrupted by user]"},
             Row{user(R"([{"type":"text","text":"one"},{"type":"image"},)"
                      R"({"type":"text","text":"two"},"x",{"type":"text","text":"three"}])"),
                 "one two three"},
             Row{user(R"([{"type":"text","text":""},{"type":"text","text":"two"}])"), "two"},
             // Trimmed at both ends, and then on one line.
             Row{prompt(" \r\n a\nb\n\nc\r\nd \t"), "a b  c\r d"},
             Row{prompt("\xC2\xA0\xE3\x80\x80x\xE2\x80\xA8\xC2\x85"), "x"},
             Row{prompt("\xE2\x80\x8Bx\xE2\x80\x8B"), "\xE2\x80\x8Bx\xE2\x80\x8B"},
             Row{prompt("\xEF\xBB\xBFx"), "\xEF\xBB\xBFx"},
         }) {
        EXPECT_THAT(promptAfter(row.line), Optional(row.prompt)) << row.line;
    }
}

TEST(UserLine, CutsALongPrompt) {
    struct Row {
        std::string text;
        std::string prompt;
    };
    const std::string family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
    const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
    for (const Row& row : {
             Row{std::string(140, 'x'), std::string(140, 'x')},
             Row{std::string(141, 'x'), std::string(140, 'x') + "…"},
             Row{std::string(200, 'x'), std::string(140, 'x') + "…"},
             Row{repeated(family, 140), repeated(family, 140)},
             Row{repeated(family, 141), repeated(family, 140) + "…"},
             Row{repeated(flag, 150), repeated(flag, 140) + "…"},
             Row{repeated("e\xCC\x81", 150), repeated("e\xCC\x81", 140) + "…"},
             // A line feed is a blank before it is counted, so it no longer joins a return.
             Row{"x" + repeated("\r\n", 70) + "y", "x" + repeated("\r ", 69) + "\r…"},
             // Trimming comes before the cut.
             Row{std::string(300, ' ') + std::string(140, 'x') + ' ', std::string(140, 'x')},
         }) {
        EXPECT_THAT(promptAfter(prompt(row.text)), Optional(row.prompt)) << row.text;
    }
}

} // namespace
} // namespace sallowmere
