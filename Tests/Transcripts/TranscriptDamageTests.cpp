// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Support/FakeFileSystem.h"
#include "Support/Texts.h"
#include "Support/Times.h"
#include "Support/TranscriptLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace sallowmere {
namespace {

using namespace transcript;

const std::string path = "/p/a.jsonl";

std::string common(int second) {
    const std::string seconds = (second < 10 ? "0" : "") + std::to_string(second);
    return R"("isSidechain":false,"cwd":"/home/user/code/lamp","sessionId":"6f1c",)"
           R"("version":"2.1.329","gitBranch":"main",)"
           + time("2026-11-20T23:37:" + seconds + ".587Z");
}

/// A short session, from the first prompt to a question that waits for its answer.
std::vector<std::string> session() {
    return {
        R"({"type":"queue-operation","operation":"enqueue","sessionId":"6f1c"})",
        prompt("Why is the lamp dark? Überprüfe \"alles\" 💡", common(1)),
        R"({"parentUuid":"7f","attachment":{"type":"environment","platform":"linux"},)" + common(2)
            + R"("type":"attachment"})",
        assistant(prose("Let me look at the wiring.\n\nThen at the bulb."), common(3)),
        assistant(toolUse("Read", R"({"file_path":"/home/user/code/lamp/wires.txt"})"), common(4)),
        toolResult(common(5)),
        R"({"type":"ai-title","aiTitle":"Dark lamp","sessionId":"6f1c"})",
        assistant(
            toolUse("TodoWrite", R"({"todos":[{"status":"completed"},{"status":"pending"}]})"),
            common(6)),
        assistant(toolUse("Bash", R"({"command":"grep -c \"{\" wires.txt"})"), common(7)),
        turnEnd(common(8)),
        R"({"type":"last-prompt","lastPrompt":"Why is the lamp dark?","sessionId":"6f1c"})",
        assistant(question("Which bulb?"), common(9)),
    };
}

ParsedTail tailOf(const std::string& content) {
    FakeFileSystem files;
    files.addFile(path, content);
    return TranscriptParser::parseTail(files, path).value_or(ParsedTail());
}

std::multiset<std::string> labelsOf(const ParsedTail& tail) {
    std::multiset<std::string> labels;
    for (const LogEvent& event : tail.events) {
        labels.insert(utf8(event.label));
    }
    return labels;
}

TEST(TranscriptDamage, FindsEverythingInTheWholeSession) {
    const ParsedTail tail = tailOf(file(session()));
    EXPECT_EQ(utf8(tail.sessionId), "6f1c");
    EXPECT_EQ(utf8(tail.title), "Dark lamp");
    EXPECT_EQ(utf8(tail.cwd), "/home/user/code/lamp");
    EXPECT_EQ(utf8(tail.gitBranch), "main");
    EXPECT_EQ(utf8(tail.model), "claude-opus-4-1");
    EXPECT_EQ(utf8(tail.lastPrompt), "Why is the lamp dark? Überprüfe \"alles\" 💡");
    EXPECT_EQ(labelsOf(tail), (std::multiset<std::string>{
                                  "Let me look at the wiring.", "Read(wires.txt)", "TodoWrite",
                                  R"(Bash(grep -c "{" wires.txt))", "AskUserQuestion"}));
    EXPECT_EQ(utf8(tail.ask->question), "Which bulb?");
    EXPECT_FALSE(tail.askAnswered);
    EXPECT_FALSE(tail.plan);
    EXPECT_EQ(tail.todo, (TodoProgress{1, 2}));
    EXPECT_EQ(tail.lastStopAt, at("2026-11-20T23:37:08.587Z"));
    EXPECT_EQ(tail.lastActivityEntryAt, at("2026-11-20T23:37:09.587Z"));
}

TEST(TranscriptDamage, CutAnywhereLeavesTheLinesThatAreWhole) {
    const std::vector<std::string> lines = session();
    std::string content;
    std::vector<std::string> whole;
    for (const std::string& line : lines) {
        for (std::size_t length = 0; length < line.size(); ++length) {
            ASSERT_EQ(tailOf(content + line.substr(0, length)), folded(whole))
                << whole.size() << ' ' << length;
        }
        whole.push_back(line);
        ASSERT_EQ(tailOf(content + line), folded(whole)) << whole.size();
        content += line + '\n';
    }
}

TEST(TranscriptDamage, CutAtTheFrontLeavesTheLinesThatAreWhole) {
    // Long enough for the reader to begin at a given place of the session.
    const std::vector<std::string> lines = session();
    const std::string content = file(lines);
    const std::string preceded = 'x' + content;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::vector<std::string> rest(lines.begin() + std::ptrdiff_t(i) + 1, lines.end());
        for (const std::size_t within : {std::size_t{0}, std::size_t{1}, lines[i].size() / 2,
                                         lines[i].size() - 1, lines[i].size()}) {
            const std::size_t cut = lineStart + within;
            const std::string filling(TranscriptParser::tailBytes - (content.size() - cut), '\n');
            ASSERT_EQ(tailOf(preceded + filling), folded(rest)) << i << ' ' << within;
        }
        lineStart += lines[i].size() + 1;
    }
}

TEST(TranscriptDamage, OfOneByteCostsOneLine) {
    const std::vector<std::string> lines = session();
    for (const char byte : {'\n', '"', '\0', '\xFF'}) {
        for (std::size_t damaged = 0; damaged < lines.size(); ++damaged) {
            std::vector<std::string> others = lines;
            others.erase(others.begin() + std::ptrdiff_t(damaged));
            const std::multiset<std::string> expected = labelsOf(folded(others));
            for (std::size_t at = 0; at < lines[damaged].size(); ++at) {
                std::vector<std::string> copy = lines;
                copy[damaged][at] = byte;
                const std::multiset<std::string> found = labelsOf(tailOf(file(copy)));
                ASSERT_TRUE(
                    std::includes(found.begin(), found.end(), expected.begin(), expected.end()))
                    << damaged << ' ' << at << ' ' << int(byte);
            }
        }
    }
}

TEST(TranscriptDamage, OfOneLineFeedCostsTheTwoLinesItParted) {
    const std::vector<std::string> lines = session();
    for (std::size_t joined = 0; joined + 1 < lines.size(); ++joined) {
        std::vector<std::string> copy = lines;
        copy[joined] += ' ' + copy[joined + 1];
        copy.erase(copy.begin() + std::ptrdiff_t(joined) + 1);
        std::vector<std::string> others = copy;
        others[joined] = "-";
        EXPECT_EQ(tailOf(file(copy)), folded(others)) << joined;
    }
}

TEST(TranscriptDamage, OfTheWholeFileIsSurvived) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(tailOf(std::string(5'000, char(byte))), ParsedTail()) << byte;
    }
    EXPECT_EQ(tailOf(std::string(600'000, '{')), ParsedTail());
    EXPECT_EQ(tailOf(R"("type":"user")" + std::string(600'000, '[')), ParsedTail());
    std::string deep = R"({"type":"user","message":)";
    for (int i = 0; i < 100'000; ++i) {
        deep += R"({"a":)";
    }
    EXPECT_EQ(tailOf(deep), ParsedTail());
}

TEST(TranscriptDamage, OfTheDiskCostsTheFile) {
    FakeFileSystem files;
    FakeFileSystem::File& damaged = files.addFile(path, file(session()));
    damaged.readLimit = 100;
    for (std::uint64_t offset = 0; offset <= damaged.content.size(); offset += 50) {
        damaged.failsAt = offset;
        EXPECT_FALSE(TranscriptParser::parseTail(files, path)) << offset;
    }
}

} // namespace
} // namespace sallowmere
