// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Support/FakeFileSystem.h"
#include "Support/Texts.h"
#include "Support/TranscriptLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using namespace transcript;
using testing::Optional;
using testing::SizeIs;

const std::string path = "/p/a.jsonl";

std::optional<ParsedTail> tailOf(const std::string& content) {
    FakeFileSystem files;
    files.addFile(path, content);
    return TranscriptParser::parseTail(files, path);
}

std::optional<std::string> lastPromptOf(const std::string& content) {
    const std::optional<ParsedTail> tail = tailOf(content);
    return tail ? utf8(tail->lastPrompt) : std::nullopt;
}

/// A text of `size` bytes that ends in `end`.
std::string filled(std::size_t size, char filling, const std::string& end) {
    return std::string(size - end.size(), filling) + end;
}

TEST(TailReader, KeepsTheFirstLineOfAShortFile) {
    EXPECT_THAT(lastPromptOf(prompt("Hello")), Optional(std::string("Hello")));
    EXPECT_THAT(lastPromptOf(prompt("Hello") + '\n'), Optional(std::string("Hello")));
}

TEST(TailReader, ReadsNoMoreThanTheEndOfALongFile) {
    FakeFileSystem files;
    files.addFile(path, filled(std::size_t{2} * 1'024 * 1'024, 'x', '\n' + prompt("Hello") + '\n'));
    const auto tail = TranscriptParser::parseTail(files, path);
    ASSERT_TRUE(tail);
    EXPECT_THAT(utf8(tail->lastPrompt), Optional(std::string("Hello")));
    EXPECT_EQ(files.bytesRead(), 524'288U);
}

TEST(TailReader, DropsTheFirstLineOfATailThatMayBeCut) {
    // The tail begins with a line that is whole to look at.
    const std::string tail = filled(524'288, ' ', prompt("cut") + '\n' + title("Kept") + '\n');
    const auto parsed = tailOf("x" + tail);
    ASSERT_TRUE(parsed);
    EXPECT_FALSE(parsed->lastPrompt);
    EXPECT_THAT(utf8(parsed->title), Optional(std::string("Kept")));
}

TEST(TailReader, DropsNothingWhereTheWholeFileWasRead) {
    for (const std::size_t size : {524'287U, 524'288U}) {
        const auto tail = tailOf(filled(size, ' ', prompt("first") + '\n' + title("Second")));
        ASSERT_TRUE(tail);
        EXPECT_THAT(utf8(tail->lastPrompt), Optional(std::string("first"))) << size;
    }
}

TEST(TailReader, DropsOnlyTheLineFeedThatATailBeginsWith) {
    const std::string line = prompt("Hello");
    const std::string tail = '\n' + line + filled(524'288 - 1 - line.size(), ' ', "\n");
    EXPECT_THAT(lastPromptOf("x" + tail), Optional(std::string("Hello")));
}

TEST(TailReader, KeepsATailWithoutLineFeedWhole) {
    const std::string tail = filled(524'288, ' ', prompt("Hello"));
    EXPECT_THAT(lastPromptOf(std::string(100'000, ' ') + tail), Optional(std::string("Hello")));
}

TEST(TailReader, FindsNothingInATailThatIsOneEndedLine) {
    const auto tail = tailOf(filled(600'000, ' ', prompt("Hello") + '\n'));
    EXPECT_EQ(tail, ParsedTail());
}

TEST(TailReader, SurvivesACharacterThatTheTailCuts) {
    const std::string line = prompt("é");
    const std::string end = "\xA9\n" + line + '\n';
    const std::string content =
        std::string(1'000, 'x') + "\xC3" + end + std::string(524'288 - end.size(), '\n');
    EXPECT_THAT(lastPromptOf(content), Optional(std::string("é")));
}

TEST(TailReader, GivesNothingWhereNothingWasRead) {
    FakeFileSystem files;
    files.addFile("/p/empty.jsonl", "");
    files.addFile("/p/secret.jsonl", prompt("Hello")).readable = false;
    files.addFile("/p/directory.jsonl", prompt("Hello")).type = EntryType::directory;
    files.addFile("/p/fifo.jsonl", prompt("Hello")).type = EntryType::other;
    files.addFile("/p/broken.jsonl", prompt("Hello")).failsAt = 0;
    for (const char* name : {"empty", "secret", "directory", "fifo", "broken", "missing"}) {
        EXPECT_FALSE(TranscriptParser::parseTail(files, "/p/" + std::string(name) + ".jsonl"))
            << name;
    }
}

TEST(TailReader, GivesNothingWhenAReadFailsOnTheWay) {
    FakeFileSystem files;
    FakeFileSystem::File& file = files.addFile(path, transcript::file({prompt("a"), prompt("b")}));
    file.readLimit = 16;
    for (std::uint64_t offset = 0; offset <= file.content.size(); ++offset) {
        file.failsAt = offset;
        EXPECT_FALSE(TranscriptParser::parseTail(files, path)) << offset;
    }
}

TEST(TailReader, ReadsFromTheStartWhenTheSizeCannotBeTold) {
    FakeFileSystem files;
    files.addFile(path, prompt("Hello") + std::string(600'000, '\n')).sizeKnown = false;
    const auto tail = TranscriptParser::parseTail(files, path);
    ASSERT_TRUE(tail);
    EXPECT_THAT(utf8(tail->lastPrompt), Optional(std::string("Hello")));
}

TEST(TailReader, DoesNotMindShortReads) {
    FakeFileSystem files;
    FakeFileSystem::File& file = files.addFile(
        path, transcript::file({prompt("Hello"), assistant(prose("Hi")), title("Greeting")}));
    const auto whole = TranscriptParser::parseTail(files, path);
    for (const std::size_t limit : {1U, 7U, 100U}) {
        file.readLimit = limit;
        EXPECT_EQ(TranscriptParser::parseTail(files, path), whole) << limit;
    }
}

TEST(TailReader, LeavesOutEmptyLinesAndCountsAllOthers) {
    const auto tail =
        tailOf("\n\n" + assistant(prose("one")) + "\n\n\r\nnoise\n" + assistant(prose("four")));
    ASSERT_TRUE(tail);
    ASSERT_THAT(tail->events, SizeIs(2));
    EXPECT_EQ(utf8(tail->events[0].id), "1.0");
    EXPECT_EQ(utf8(tail->events[1].id), "4.0");
}

TEST(TailReader, EndsLinesAtLineFeedsOnly) {
    EXPECT_THAT(lastPromptOf(prompt("one") + "\r\n" + prompt("two") + "\r\n"),
                Optional(std::string("two")));
    EXPECT_THAT(lastPromptOf(prompt("a\xE2\x80\xA8"
                                    "b\xC2\x85"
                                    "c")),
                Optional(std::string("a\xE2\x80\xA8"
                                     "b\xC2\x85"
                                     "c")));
    // With nothing but a carriage return between them they are one line, and no JSON.
    EXPECT_EQ(lastPromptOf(prompt("one") + "\r" + prompt("two")), std::nullopt);
}

TEST(TailReader, ReadsALineWithInvalidBytesAfterTheirReplacement) {
    EXPECT_THAT(lastPromptOf(prompt("a\xFF\xC3z")),
                Optional(std::string("a\xEF\xBF\xBD\xEF\xBF\xBDz")));
    EXPECT_EQ(lastPromptOf(prompt("Hello") + "\xFF\n"), std::nullopt);
}

TEST(TailReader, SkipsALineThatBeginsWithAByteOrderMark) {
    EXPECT_EQ(lastPromptOf("\xEF\xBB\xBF" + prompt("Hello")), std::nullopt);
    EXPECT_THAT(lastPromptOf("\xEF\xBB\xBF" + prompt("one") + '\n' + prompt("two")),
                Optional(std::string("two")));
}

} // namespace
} // namespace sallowmere
