// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageTest.h"

#include <algorithm>
#include <random>
#include <vector>

namespace sallowmere {
namespace {

/// Random growth of some files. What is learned bit by bit must be what the final files say.
/// Weights are whole, so that sums are exact in any order.
class UsageGrowthTest : public UsageTest, public testing::WithParamInterface<unsigned> {
protected:
    static constexpr int fileCount = 4;

    UsageGrowthTest() {
        settings.weightInput = 1;
        for (int i = 0; i < fileCount; ++i) {
            write(nameOf(i), "").modified = advancedBy(now, 2'000'000);
        }
    }

    static std::string nameOf(int file) { return "project/" + std::to_string(file) + ".jsonl"; }

    int random(int least, int most) { return std::uniform_int_distribution(least, most)(engine_); }

    /// What follows from the number alone: copies of a message in several files are equal.
    static std::string numberedLine(int number, Timestamp time) {
        return lineOf({.id = quoted("msg_" + std::to_string(number)),
                       .time = quoted(spelled(time)),
                       .model = number % 3 == 0 ? R"("claude-opus-4-1")" : R"("claude-haiku-4-5")",
                       .usage = inputTokens(std::to_string(1 + number * 7919 % 1'000))});
    }

    void growPieceByPiece(const std::string& name, std::string text) {
        while (!text.empty()) {
            const auto size = static_cast<std::size_t>(random(1, 400));
            append(name, text.substr(0, size));
            text.erase(0, std::min(size, text.size()));
            files.file(pathOf(name)).readLimit = static_cast<std::size_t>(random(50, 1'000));
            compute();
        }
    }

private:
    std::mt19937 engine_{GetParam()};
};

TEST_P(UsageGrowthTest, LinesThatArriveInOrderOfTimeGiveTheSnapshotOfTheFinalFiles) {
    Timestamp time = advancedBy(now, -3 * 86'400);
    std::vector<std::string> written;
    for (int number = 0; number < 120; ++number) {
        time = advancedBy(time, random(0, 4'000));
        now = time;
        written.push_back(numberedLine(number, time));
        const bool isCopied = random(0, 4) == 0;
        const auto old = static_cast<std::size_t>(random(0, number));
        growPieceByPiece(nameOf(random(0, fileCount - 1)),
                         written.back() + (isCopied ? written[old] : "\n"));
    }
    now = advancedBy(now, random(0, 20'000));
    EXPECT_EQ(compute(), computeAnew());
    EXPECT_GT(weeklyTokens(), 0);
}

TEST_P(UsageGrowthTest, LinesThatArriveInAnyOrderGiveTheWeeklyFiguresOfTheFinalFiles) {
    const Timestamp start = now;
    const auto randomLine = [&] {
        const int number = random(0, 200);
        return numberedLine(number, advancedBy(start, number * 5'000));
    };
    for (int step = 0; step < 150; ++step) {
        // Whole and broken lines, more than one file unfinished at a time.
        std::string text = randomLine() + randomLine();
        if (random(0, 3) == 0) {
            text.resize(text.size() - static_cast<std::size_t>(random(1, 300)));
        }
        growPieceByPiece(nameOf(random(0, fileCount - 1)), text);
        now = advancedBy(now, random(0, 12'000));
        std::string& content = files.file(pathOf(nameOf(random(0, fileCount - 1)))).content;
        const std::string shorter = randomLine();
        if (random(0, 29) == 0 && content.size() > shorter.size()) {
            content = shorter;
        }
        const UsageSnapshot grown = compute();
        const UsageSnapshot anew = computeAnew();
        ASSERT_EQ(grown.weekly, anew.weekly) << "step " << step;
        ASSERT_EQ(grown.weeklyFable, anew.weeklyFable) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, UsageGrowthTest, testing::Range(1U, 9U));

} // namespace
} // namespace sallowmere
