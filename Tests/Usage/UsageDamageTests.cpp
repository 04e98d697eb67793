// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageTest.h"

#include <vector>

namespace sallowmere {
namespace {

constexpr std::size_t hugeLine = std::size_t{200} << 20;

/// Transcripts cut, split and damaged: whatever is whole counts, whatever is not costs itself only.
class UsageDamageTest : public UsageTest {
protected:
    const std::string name = "session.jsonl";

    double tokensOf(const std::string& content) {
        write(name, content);
        return computeAnew().weekly.weightedTokens;
    }
};

/// Several lines as a session has them, good and bad.
std::string transcript() {
    return R"({"type":"mode","mode":"default","sessionId":"5f0e"})"
           "\n"
           R"({"parentUuid":null,"type":"user","message":{"role":"user","content":"na\u00efve \u2713"}})"
           "\n"
           + messageLine("msg_a", 1) + messageLine("msg_a", 1)
           + "\n"
             R"({"type":"assistant","message":{"id":"broken","usage":{"input_tokens":)"
             "\n"
           + lineOf({.id = "\"msg_\xC3\xBC\"", .usage = inputTokens("20")})
           + "{\"type\":\"assistant\",\"usage\":\"\xFF\xFE\"}\r\n"
           + lineOf({.id = "\"msg_\xE2\x82\"", .usage = inputTokens("300")})
           + messageLine("msg_d", 4'000);
}

TEST_F(UsageDamageTest, ALineAppendedByteByByteCountsOnceItsLineFeedIsThere) {
    const std::string line = messageLine("a", 7);
    write(name, "");
    for (std::size_t i = 0; i < line.size(); ++i) {
        append(name, line.substr(i, 1));
        ASSERT_EQ(weeklyTokens(), i + 1 == line.size() ? 7 : 0) << "after byte " << i;
    }
    EXPECT_EQ(files.bytesRead(), line.size());
    EXPECT_EQ(weeklyTokens(), 7);
}

TEST_F(UsageDamageTest, ALineSplitAtAnyByteOverTwoComputationsCountsOnce) {
    const std::string line = messageLine("a", 7);
    for (std::size_t split = 0; split < line.size(); ++split) {
        UsageCalculator reader(files);
        write(name, line.substr(0, split));
        ASSERT_EQ(reader.compute(settings, now).weekly.weightedTokens, 0) << split;
        append(name, line.substr(split));
        ASSERT_EQ(reader.compute(settings, now).weekly.weightedTokens, 7) << split;
        ASSERT_EQ(reader.compute(settings, now).weekly.weightedTokens, 7) << split;
    }
}

TEST_F(UsageDamageTest, ReadingInPiecesOfAnySizeEqualsReadingAtOnce) {
    const std::string content = transcript();
    ASSERT_EQ(tokensOf(content), 4'321);
    for (std::size_t limit = 1; limit <= content.size(); ++limit) {
        write(name, content).readLimit = limit;
        ASSERT_EQ(computeAnew().weekly.weightedTokens, 4'321) << "pieces of " << limit;
    }
}

TEST_F(UsageDamageTest, ReadingAGrowingFileInTwoPartsEqualsReadingItAtOnce) {
    const std::string content = transcript();
    write(name, content);
    const UsageSnapshot whole = computeAnew();
    for (std::size_t split = 0; split <= content.size(); ++split) {
        UsageCalculator reader(files);
        write(name, content.substr(0, split));
        reader.compute(settings, now);
        append(name, content.substr(split));
        ASSERT_EQ(reader.compute(settings, now), whole) << "split at " << split;
    }
}

TEST_F(UsageDamageTest, AFileCutAnywhereCountsItsWholeLines) {
    const std::string content = transcript();
    std::vector<std::pair<std::size_t, double>> ends{{0, 0}};
    for (const auto& [id, tokens] : {std::pair("msg_a", 1), std::pair("msg_\xC3\xBC", 20),
                                     std::pair("msg_\xE2\x82", 300), std::pair("msg_d", 4'000)}) {
        const std::size_t end = content.find('\n', content.find(id)) + 1;
        ends.emplace_back(end, ends.back().second + tokens);
    }
    std::size_t passed = 0;
    for (std::size_t cut = 0; cut <= content.size(); ++cut) {
        while (passed + 1 < ends.size() && ends[passed + 1].first <= cut) {
            ++passed;
        }
        ASSERT_EQ(tokensOf(content.substr(0, cut)), ends[passed].second) << "cut at " << cut;
    }
    EXPECT_EQ(ends[passed].second, 4'321);
}

TEST_F(UsageDamageTest, ALineCutAnywhereCostsOnlyItself) {
    const std::string line = messageLine("cut", 7);
    for (std::size_t length = 0; length + 1 < line.size(); ++length) {
        ASSERT_EQ(
            tokensOf(messageLine("a", 10) + line.substr(0, length) + "\n" + messageLine("b", 100)),
            110)
            << length;
    }
}

TEST_F(UsageDamageTest, AnyByteOfALineMayBeAnyOtherWithoutHarmToTheNext) {
    const std::string line = messageLine("hit", 0);
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        for (const char byte : {'\0', '"', '\\', '{', '}', '\xFF', '\xC3'}) {
            std::string damaged = line;
            damaged[i] = byte;
            ASSERT_EQ(tokensOf(messageLine("a", 10) + damaged + messageLine("b", 100)), 110)
                << "byte " << i << " is " << static_cast<int>(byte);
        }
    }
}

TEST_F(UsageDamageTest, CarriageReturnsBeforeLineFeedsDoNotMatter) {
    std::string first = messageLine("a", 1);
    std::string second = messageLine("b", 10);
    first.back() = '\r';
    second.back() = '\r';
    EXPECT_EQ(tokensOf(first + "\n" + second + "\n"), 11);
}

TEST_F(UsageDamageTest, ACarriageReturnAloneEndsNoLine) {
    std::string first = messageLine("a", 1);
    first.back() = '\r';
    EXPECT_EQ(tokensOf(first + messageLine("b", 10)), 0);
}

TEST_F(UsageDamageTest, EmptyLinesDoNotMatter) {
    EXPECT_EQ(tokensOf("\n\n" + messageLine("a", 1) + "\n\r\n \n" + messageLine("b", 10) + "\n"),
              11);
}

TEST_F(UsageDamageTest, AByteOrderMarkCostsTheLineItStandsBefore) {
    EXPECT_EQ(tokensOf("\xEF\xBB\xBF" + messageLine("a", 1) + messageLine("b", 10)), 10);
}

TEST_F(UsageDamageTest, InvalidUtf8IsReplacedAndTheLineCounts) {
    const char* texts[] = {
        "\xFF",             // never a byte of UTF-8
        "\x80",             // continues nothing
        "\xC3",             // begins what does not follow
        "\xE2\x82",         // ends too early
        "\xC0\xAF",         // longer than need be
        "\xED\xA0\x80",     // half of a surrogate pair
        "\xF4\x90\x80\x80", // beyond the last character
    };
    for (const std::string text : texts) {
        EXPECT_EQ(tokensOf(lineOf({.id = quoted("msg" + text), .usage = inputTokens("5")})), 5);
        EXPECT_EQ(tokensOf(lineOf({.model = quoted("opus" + text), .usage = inputTokens("5")})), 5);
    }
}

TEST_F(UsageDamageTest, IdsThatDifferOnlyInInvalidBytesAreOneId) {
    EXPECT_EQ(tokensOf(lineOf({.id = "\"msg\xFF\""}) + lineOf({.id = "\"msg\x80\""})), 1);
}

TEST_F(UsageDamageTest, ALongIntegerOrInvalidByteInOneLineDoesNotChangeTheNext) {
    EXPECT_EQ(tokensOf(lineOf({.id = "\"a\xFF\"", .usage = inputTokens("5")})
                       + lineOf({.id = R"("b")", .usage = inputTokens("1e2")})
                       + lineOf({.id = R"("c")",
                                 .usage = R"({"input_tokens":0,"big":999999999999999999999999})"})
                       + messageLine("d", 1'000)),
              1'105);
}

TEST_F(UsageDamageTest, AHugeLineCostsNothingElse) {
    std::string content = messageLine("a", 1);
    content.reserve(hugeLine + 4'096);
    content += R"({"type":"attachment","text":")";
    content.append(hugeLine, 'x');
    content += "\"}\n" + messageLine("b", 10);
    EXPECT_EQ(tokensOf(content), 11);
}

TEST_F(UsageDamageTest, AHugeLineThatLooksLikeUsageCostsNothingElse) {
    std::string content = messageLine("a", 1);
    content.reserve(hugeLine + 4'096);
    content += R"({"type":"assistant","usage":")";
    content.append(hugeLine, 'x');
    content += "\"}\n" + messageLine("b", 10);
    EXPECT_EQ(tokensOf(content), 11);
}

TEST_F(UsageDamageTest, AHugeUnfinishedLineIsReadOnce) {
    write(name, messageLine("a", 1)).content.append(hugeLine, 'x');
    EXPECT_EQ(weeklyTokens(), 1);
    append(name, "\n" + messageLine("b", 10));
    files.forget();
    EXPECT_EQ(weeklyTokens(), 11);
    EXPECT_EQ(files.bytesRead(), 1 + messageLine("b", 10).size());
}

/// A line with usage, padded to `size` bytes and a line feed.
std::string paddedLine(const std::string& id, std::size_t size) {
    std::string line = messageLine(id, 10);
    line.insert(line.size() - 1, size + 1 - line.size(), ' ');
    return line;
}

TEST_F(UsageDamageTest, ALineBeyondTheLongestIsPassedOver) {
    constexpr std::size_t longest = UsageCalculator::longestLine;
    EXPECT_EQ(tokensOf(paddedLine("a", longest) + messageLine("b", 1)), 11);
    EXPECT_EQ(tokensOf(paddedLine("a", longest + 1) + messageLine("b", 1)), 1);
}

TEST_F(UsageDamageTest, ALineBeyondTheLongestIsPassedOverInPiecesToo) {
    constexpr std::size_t longest = UsageCalculator::longestLine;
    const std::string line = paddedLine("a", longest + UsageCalculator::readChunk + 1);
    const std::string rest = messageLine("b", 1);
    for (const std::size_t split : {longest - 1, longest + 1, line.size() - 1, line.size()}) {
        UsageCalculator reader(files);
        write(name, line.substr(0, split));
        reader.compute(settings, now);
        append(name, line.substr(split) + rest);
        EXPECT_EQ(reader.compute(settings, now).weekly.weightedTokens, 1) << split;
    }
}

TEST_F(UsageDamageTest, DeeplyNestedLinesCostNothingElse) {
    const std::string deep = R"({"type":"assistant","usage":)" + std::string(100'000, '[')
                             + std::string(100'000, ']') + "}\n";
    EXPECT_EQ(tokensOf(messageLine("a", 1) + deep + messageLine("b", 10)), 11);
}

} // namespace
} // namespace sallowmere
