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
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

ParsedTail afterCalls(const std::vector<std::string>& calls) {
    std::vector<std::string> lines;
    lines.reserve(calls.size());
    for (const std::string& call : calls) {
        lines.push_back(assistant(call));
    }
    return folded(lines);
}

std::string labelOf(const std::string& tool, const std::string& input) {
    return utf8(afterCalls({toolUse(tool, input)}).events.at(0).label);
}

std::optional<AskQuestion> askOf(const std::string& input) {
    return afterCalls({toolUse("AskUserQuestion", input)}).ask;
}

std::string argumentOf(const std::string& input) {
    JsonReader reader;
    return utf8(TranscriptParser::primaryArgument(reader.object(input).value()));
}

std::string command(const std::string& text) {
    return R"({"command":)" + json(text) + '}';
}

TEST(ToolCall, AsksTheFirstOfItsQuestions) {
    const auto ask = askOf(
        R"({"questions":["x",{"question":"Which?","header":"h","options":[{"label":"One","description":"d"},)"
        R"("x",{"description":"no label"},{"label":7},{"label":""},{"label":"Two"}]},)"
        R"({"question":"Ignored?","options":[{"label":"Three"}]}]})");
    ASSERT_TRUE(ask);
    EXPECT_EQ(utf8(ask->question), "Which?");
    EXPECT_THAT(utf8(ask->options), ElementsAre("One", "", "Two"));
}

TEST(ToolCall, AsksWithoutOptionsWhenThereAreNone) {
    for (const char* input : {R"({"questions":[{"question":"Which?"}]})",
                              R"({"questions":[{"question":"Which?","options":[]}]})",
                              R"({"questions":[{"question":"Which?","options":["One","Two"]}]})",
                              R"({"questions":[{"question":"Which?","options":{"label":"x"}}]})"}) {
        const auto ask = askOf(input);
        ASSERT_TRUE(ask) << input;
        EXPECT_EQ(utf8(ask->question), "Which?");
        EXPECT_THAT(utf8(ask->options), IsEmpty());
    }
    ASSERT_TRUE(askOf(R"({"questions":[{"question":""}]})"));
}

TEST(ToolCall, AsksNothingWithoutTheTextOfTheFirstQuestion) {
    for (const std::string input :
         {R"({})", R"({"questions":[]})", R"({"questions":["Which?"]})",
          R"({"questions":{"question":"Which?"}})", R"({"questions":[{"question":7}]})",
          R"({"questions":[{"header":"h"},{"question":"Second?"}]})", R"({"question":"Which?"})"}) {
        EXPECT_FALSE(askOf(input)) << input;
        // Nor does it touch what was asked before.
        const ParsedTail tail = folded({assistant(question("Earlier?")), prompt("yes"),
                                        assistant(toolUse("AskUserQuestion", input))});
        EXPECT_EQ(utf8(tail.ask->question), "Earlier?") << input;
        EXPECT_TRUE(tail.askAnswered) << input;
    }
}

TEST(ToolCall, AsksAnewAfterAnAnswer) {
    const ParsedTail tail =
        folded({assistant(question("First?")), toolResult(), assistant(question("Second?"))});
    EXPECT_EQ(utf8(tail.ask->question), "Second?");
    EXPECT_FALSE(tail.askAnswered);
}

TEST(ToolCall, PresentsAPlan) {
    const ParsedTail tail =
        folded({assistant(plan("First")), toolResult(), assistant(plan("Second\nline"))});
    EXPECT_THAT(utf8(tail.plan), Optional(std::string("Second\nline")));
    EXPECT_FALSE(tail.planAnswered);
}

TEST(ToolCall, PresentsNoPlanWithoutText) {
    for (const std::string input :
         {R"({})", R"({"plan":""})", R"({"plan":7})", R"({"plan":["x"]})"}) {
        const ParsedTail tail = folded(
            {assistant(plan("Earlier")), toolResult(), assistant(toolUse("ExitPlanMode", input))});
        EXPECT_THAT(utf8(tail.plan), Optional(std::string("Earlier"))) << input;
        EXPECT_TRUE(tail.planAnswered) << input;
    }
}

TEST(ToolCall, AskingAndPlanningDoNotTouchEachOther) {
    const ParsedTail planned =
        folded({assistant(question("Which?")), toolResult(), assistant(plan("Do it"))});
    EXPECT_TRUE(planned.askAnswered);
    EXPECT_FALSE(planned.planAnswered);
    const ParsedTail asked =
        folded({assistant(plan("Do it")), toolResult(), assistant(question("Which?"))});
    EXPECT_FALSE(asked.askAnswered);
    EXPECT_TRUE(asked.planAnswered);
}

TEST(ToolCall, CountsTodos) {
    const ParsedTail tail = afterCalls({toolUse(
        "TodoWrite",
        R"({"todos":[{"status":"completed"},{"status":"in_progress"},{"status":"pending"}]})")});
    EXPECT_EQ(tail.todo, (TodoProgress{1, 3}));
}

TEST(ToolCall, CountsEveryObjectAsATodoButOnlyExactWordsAsDone) {
    const ParsedTail tail = afterCalls({toolUse(
        "TodoWrite", R"({"todos":["completed",{"status":"Completed"},{"status":"completed "},{},)"
                     R"({"status":true},null,{"status":"completed"},{"status":"completed"}]})")});
    EXPECT_EQ(tail.todo, (TodoProgress{2, 6}));
}

TEST(ToolCall, KeepsTheTodosWhenAListHasNone) {
    for (const std::string input : {R"({})", R"({"todos":[]})", R"({"todos":["completed"]})",
                                    R"({"todos":{"status":"x"}})"}) {
        const ParsedTail tail =
            afterCalls({toolUse("TodoWrite", R"({"todos":[{"status":"completed"}]})"),
                        toolUse("TodoWrite", input)});
        EXPECT_EQ(tail.todo, (TodoProgress{1, 1})) << input;
    }
}

TEST(ToolCall, OfAnotherNameMeansNothing) {
    const ParsedTail tail = afterCalls(
        {toolUse("askuserquestion", R"({"questions":[{"question":"Which?"}]})"),
         toolUse("ExitPlanMode2", R"({"plan":"x"})"), toolUse("Todo", R"({"todos":[{}]})")});
    EXPECT_FALSE(tail.ask);
    EXPECT_FALSE(tail.plan);
    EXPECT_FALSE(tail.todo);
    EXPECT_THAT(tail.events, SizeIs(3));
}

TEST(ToolCall, IsLoggedWhateverItMeans) {
    EXPECT_EQ(labelOf("AskUserQuestion", R"({"questions":[{"question":"Which?"}]})"),
              "AskUserQuestion");
    EXPECT_EQ(labelOf("ExitPlanMode", R"({"plan":"Do it"})"), "ExitPlanMode");
    EXPECT_EQ(labelOf("TodoWrite", R"({"todos":[{"status":"completed"}]})"), "TodoWrite");
    EXPECT_EQ(labelOf("AskUserQuestion", R"({"description":"x"})"), "AskUserQuestion(x)");
    EXPECT_EQ(labelOf("Read", R"({"file_path":"/a/b/notes.txt"})"), "Read(notes.txt)");
    EXPECT_EQ(labelOf("Frobnicate", R"({"name":"x"})"), "Frobnicate(x)");
    EXPECT_EQ(labelOf("Bash", "{}"), "Bash");
    EXPECT_EQ(labelOf("Bash", command(std::string(60, 'x'))),
              "Bash(" + std::string(48, 'x') + "…)");
}

TEST(PrimaryArgument, IsTheFirstOfTheKnownKeys) {
    const std::vector<std::string> keys{"file_path", "path",        "pattern", "command", "query",
                                        "skill",     "description", "url",     "prompt",  "name"};
    std::string members;
    // The object holds them in the opposite order, which does not matter.
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        members += (members.empty() ? "\"" : ",\"") + *key + R"(":"of )" + *key + '"';
        EXPECT_EQ(argumentOf('{' + members + '}'), "of " + *key);
    }
}

TEST(PrimaryArgument, PassesOverEmptyAndForeignValues) {
    EXPECT_EQ(argumentOf(R"({"file_path":"","path":7,"pattern":null,"command":["x"],"query":"q"})"),
              "q");
    EXPECT_EQ(argumentOf(R"({"FILE_PATH":"x","content":"y","old_string":"z"})"), "");
    EXPECT_EQ(argumentOf("{}"), "");
    // A blank is a value.
    EXPECT_EQ(argumentOf(R"({"command":" ","query":"q"})"), " ");
}

TEST(PrimaryArgument, KeepsTheLastComponentOfPathsAlone) {
    struct Row {
        std::string input;
        std::string argument;
    };
    for (const Row& row : {
             Row{R"({"file_path":"/a/b/notes.txt"})", "notes.txt"},
             Row{R"({"path":"/a/b/"})", "b"},
             Row{R"({"path":"/a/b//"})", "b"},
             Row{R"({"file_path":"notes.txt"})", "notes.txt"},
             Row{R"({"file_path":"/"})", "/"},
             Row{R"({"path":"//"})", "/"},
             Row{R"({"file_path":"/a/two\nlines"})", "two lines"},
             Row{R"({"pattern":"/a/b/*.txt"})", "/a/b/*.txt"},
             Row{R"({"command":"ls /a/b"})", "ls /a/b"},
             Row{R"({"query":"a/b"})", "a/b"},
             Row{R"({"skill":"a/b"})", "a/b"},
             Row{R"({"description":"a/b"})", "a/b"},
             Row{R"({"url":"https://example.org/a/b"})", "https://example.org/a/b"},
             Row{R"({"prompt":"a/b"})", "a/b"},
             Row{R"({"name":"a/b"})", "a/b"},
         }) {
        EXPECT_EQ(argumentOf(row.input), row.argument) << row.input;
    }
}

TEST(PrimaryArgument, IsOneLineOfAtMostFortyEightCharacters) {
    const std::string family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
    std::string families;
    for (int i = 0; i < 48; ++i) {
        families += family;
    }
    EXPECT_EQ(argumentOf(command(std::string(48, 'x'))), std::string(48, 'x'));
    EXPECT_EQ(argumentOf(command(std::string(49, 'x'))), std::string(48, 'x') + "…");
    EXPECT_EQ(argumentOf(command(std::string(60, 'x'))), std::string(48, 'x') + "…");
    EXPECT_EQ(argumentOf(command(families)), families);
    EXPECT_EQ(argumentOf(command(families + "x")), families + "…");
    EXPECT_EQ(argumentOf(command("a\nb\n\nc\r\n")), "a b  c\r ");
    // The blank of a line feed counts apart from the return before it.
    EXPECT_EQ(argumentOf(command(std::string(47, 'x') + "\r\ny")), std::string(47, 'x') + "\r…");
    EXPECT_EQ(argumentOf(command(std::string(47, 'x') + "\r\nyy")), std::string(47, 'x') + "\r…");
    EXPECT_EQ(argumentOf(command(std::string(48, 'x') + "\r\n")), std::string(48, 'x') + "…");
    EXPECT_EQ(argumentOf(command(std::string(47, 'x') + "\r")), std::string(47, 'x') + "\r");
    // A path is taken apart before it is cut.
    EXPECT_EQ(argumentOf(R"({"file_path":"/)" + std::string(100, 'x') + R"(/notes.txt"})"),
              "notes.txt");
}

} // namespace
} // namespace sallowmere
