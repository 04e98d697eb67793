// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Support/Texts.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

std::string lineOf(LogEvent::Kind kind, std::string_view label) {
    LogEvent event;
    event.kind = kind;
    event.label = QString::fromUtf8(label.data(), qsizetype(label.size()));
    return utf8(TranscriptParser::activityLine(event));
}

TEST(ActivityLine, OfAToolSaysWhatItDoes) {
    struct Row {
        std::string_view label;
        std::string_view line;
    };
    for (const Row& row : {
             Row{"Read(notes.txt)", "Reading notes.txt"},
             Row{"Edit(notes.txt)", "Writing notes.txt"},
             Row{"Write(notes.txt)", "Writing notes.txt"},
             Row{"NotebookEdit(a.ipynb)", "Writing a.ipynb"},
             Row{"Bash(ls -l)", "Running ls -l"},
             Row{"Grep(needle)", "Searching needle"},
             Row{"Glob(*.txt)", "Searching *.txt"},
             Row{"Task(look around)", "Delegating: look around"},
             Row{"Agent(look around)", "Delegating: look around"},
             Row{"TodoWrite(x)", "Updating plan"},
             Row{"WebFetch(https://example.org)", "Fetching https://example.org"},
             Row{"WebSearch(needle)", "Fetching needle"},
             Row{"Skill(review)", "Skill: review"},
             Row{"AskUserQuestion(x)", "Asking you a question"},
             Row{"Frobnicate(x)", "Frobnicate: x"},
             Row{"read(notes.txt)", "read: notes.txt"},
         }) {
        EXPECT_EQ(lineOf(LogEvent::Kind::tool, row.label), row.line);
    }
}

TEST(ActivityLine, OfAToolWithoutArgumentIsItsBareName) {
    for (const std::string_view label :
         {"Read", "Edit", "Write", "NotebookEdit", "Bash", "Grep", "Glob", "Task", "Agent",
          "TodoWrite", "WebFetch", "WebSearch", "Skill", "AskUserQuestion", "Frobnicate", ""}) {
        EXPECT_EQ(lineOf(LogEvent::Kind::tool, label), label);
    }
}

TEST(ActivityLine, PartsNameAndArgumentAtTheFirstParenthesis) {
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Bash(echo (a) (b))"), "Running echo (a) (b)");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Bash(f())"), "Running f()");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Bash(ls"), "Running ls");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Odd(name)(x)"), "Odd: name)(x");
}

TEST(ActivityLine, WithAnEmptyArgumentKeepsThePrefixOfKnownToolsOnly) {
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Bash()"), "Running ");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "Frobnicate()"), "Frobnicate");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "TodoWrite()"), "Updating plan");
    EXPECT_EQ(lineOf(LogEvent::Kind::tool, "AskUserQuestion()"), "Asking you a question");
}

TEST(ActivityLine, OfProseIsTheProse) {
    for (const std::string_view label : {"Hello", "Read(notes.txt)", "Look (here)", ""}) {
        EXPECT_EQ(lineOf(LogEvent::Kind::text, label), label);
    }
}

} // namespace
} // namespace sallowmere
