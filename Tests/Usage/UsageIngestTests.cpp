// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageTest.h"

#include <vector>

namespace sallowmere {
namespace {

/// How one growing, shrinking or failing file is kept up with.
class UsageIngestTest : public UsageTest {
protected:
    const std::string name = "project/session.jsonl";

    FakeFileSystem::File& file() { return files.file(pathOf(name)); }

    /// Tokens of one computation, with the record of what it touched started anew.
    double tokensNow() {
        files.forget();
        return weeklyTokens();
    }
};

TEST_F(UsageIngestTest, OnlyWhatWasAppendedIsRead) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_EQ(files.bytesRead(), messageLine("a", 1).size());

    append(name, messageLine("b", 10));
    EXPECT_EQ(tokensNow(), 11);
    EXPECT_EQ(files.bytesRead(), messageLine("b", 10).size());
}

TEST_F(UsageIngestTest, AFileOfTheSameSizeIsNotOpened) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    file().modified += std::chrono::seconds(1);
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_THAT(files.opened(), testing::IsEmpty());
}

TEST_F(UsageIngestTest, AFileRewrittenToTheSameSizeGoesUnnoticed) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    file().content = messageLine("b", 2);
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_THAT(files.opened(), testing::IsEmpty());
}

TEST_F(UsageIngestTest, AFileRewrittenToAGreaterSizeIsReadOnWhereItWas) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    file().content = messageLine("b", 2) + messageLine("c", 30);
    EXPECT_EQ(tokensNow(), 31);
    EXPECT_EQ(files.bytesRead(), messageLine("c", 30).size());
}

TEST_F(UsageIngestTest, AnEmptyFileIsNotOpened) {
    write(name, "");
    EXPECT_EQ(tokensNow(), 0);
    EXPECT_THAT(files.opened(), testing::IsEmpty());
}

TEST_F(UsageIngestTest, AFileThatShrankIsReadFromItsStart) {
    write(name, messageLine("a", 1) + messageLine("b", 20) + messageLine("c", 300));
    EXPECT_EQ(tokensNow(), 321);
    // "a" counts again, with its new figure, and the others are gone.
    file().content = messageLine("a", 5'000) + messageLine("d", 4);
    EXPECT_EQ(tokensNow(), 5'004);
    EXPECT_EQ(files.bytesRead(), file().content.size());
}

TEST_F(UsageIngestTest, AFileThatShrankToNothingLosesItsSamplesWithoutBeingOpened) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    file().content.clear();
    EXPECT_EQ(tokensNow(), 0);
    EXPECT_THAT(files.opened(), testing::IsEmpty());

    append(name, messageLine("a", 2));
    EXPECT_EQ(tokensNow(), 2);
}

TEST_F(UsageIngestTest, AFileThatShrankForgetsItsUnfinishedLine) {
    const std::string line = messageLine("a", 1);
    write(name, messageLine("x", 10) + line.substr(0, 50));
    EXPECT_EQ(tokensNow(), 10);
    file().content = line;
    EXPECT_EQ(tokensNow(), 1) << "glued to the old beginning it would be no JSON";
}

TEST_F(UsageIngestTest, AnUnfinishedLineCountsTowardsWhatWasRead) {
    write(name, messageLine("a", 1) + "unfinished");
    EXPECT_EQ(tokensNow(), 1);
    file().content = messageLine("a", 2) + "unfin";
    EXPECT_EQ(tokensNow(), 2) << "it shrank, although not below its last line feed";
}

TEST_F(UsageIngestTest, WhenAFileShrinksAnotherFilesCopyCountsInstead) {
    write("a.jsonl", messageLine("same", 5) + messageLine("more", 10));
    write("b.jsonl", messageLine("same", 700));
    EXPECT_EQ(tokensNow(), 15);
    files.file(pathOf("a.jsonl")).content = messageLine("new", 1);
    EXPECT_EQ(tokensNow(), 701);
}

TEST_F(UsageIngestTest, ALastLineCountsOnceALineFeedFollows) {
    std::string line = messageLine("a", 1);
    line.pop_back();
    write(name, line);
    EXPECT_EQ(tokensNow(), 0);
    EXPECT_EQ(tokensNow(), 0);
    append(name, "\n");
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_EQ(files.bytesRead(), 1U) << "the line is carried over, not read again";
    append(name, "\n" + messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
}

TEST_F(UsageIngestTest, AFileThatCannotBeOpenedKeepsWhatWasLearned) {
    write(name, messageLine("a", 1));
    EXPECT_EQ(tokensNow(), 1);
    append(name, messageLine("b", 10));
    file().readable = false;
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_THAT(files.opened(), testing::ElementsAre(pathOf(name)));

    file().readable = true;
    EXPECT_EQ(tokensNow(), 11);
    EXPECT_EQ(files.bytesRead(), messageLine("b", 10).size());
}

TEST_F(UsageIngestTest, AFileThatShrankAndCannotBeOpenedHasNothing) {
    write(name, messageLine("a", 1) + messageLine("b", 10));
    EXPECT_EQ(tokensNow(), 11);
    file().content = messageLine("c", 100);
    file().readable = false;
    EXPECT_EQ(tokensNow(), 0);
    file().readable = true;
    EXPECT_EQ(tokensNow(), 100);
}

TEST_F(UsageIngestTest, AReadThatFailsKeepsWhatWasReadBefore) {
    const std::string first = messageLine("a", 1);
    write(name, first + messageLine("b", 10) + messageLine("c", 100));
    file().readLimit = 64;
    file().failsAt = first.size() + 64;
    EXPECT_EQ(tokensNow(), 1);
    const std::uint64_t readBefore = files.bytesRead();

    file().failsAt = UINT64_MAX;
    EXPECT_EQ(tokensNow(), 111);
    EXPECT_EQ(readBefore + files.bytesRead(), file().content.size());
}

TEST_F(UsageIngestTest, AFileWhoseFirstReadFailsHasNothing) {
    write(name, messageLine("a", 1)).failsAt = 0;
    EXPECT_EQ(tokensNow(), 0);
    file().failsAt = UINT64_MAX;
    EXPECT_EQ(tokensNow(), 1);
}

/// Says of every file that it is as long as it was a moment ago.
class LaggingFileSystem : public FakeFileSystem {
public:
    std::uint64_t lag = 0;

    std::optional<FileStatus> status(const std::string& path, Links links) const override {
        std::optional<FileStatus> status = FakeFileSystem::status(path, links);
        if (status) {
            status->size -= std::min(status->size, lag);
        }
        return status;
    }
};

TEST_F(UsageIngestTest, AFileThatGrowsWhileItIsScannedIsReadToItsEnd) {
    LaggingFileSystem growing;
    UsageCalculator reader(growing);
    growing.addFile(pathOf(name), messageLine("a", 1) + messageLine("b", 10), now);
    growing.lag = messageLine("b", 10).size();
    EXPECT_EQ(reader.compute(settings, now).weekly.weightedTokens, 11);

    growing.lag = 0;
    growing.forget();
    EXPECT_EQ(reader.compute(settings, now).weekly.weightedTokens, 11);
    EXPECT_THAT(growing.opened(), testing::IsEmpty());
}

/// Notes how much each read asks for.
class MeasuringFileSystem : public FakeFileSystem {
public:
    mutable std::vector<std::size_t> asked;

    std::unique_ptr<ReadableFile> open(const std::string& path) const override {
        return std::make_unique<MeasuredFile>(FakeFileSystem::open(path), asked);
    }

private:
    class MeasuredFile : public ReadableFile {
    public:
        MeasuredFile(std::unique_ptr<ReadableFile> file, std::vector<std::size_t>& asked)
            : file_(std::move(file)), asked_(asked) {}

        std::optional<std::uint64_t> size() const override { return file_->size(); }

        std::optional<std::size_t> read(std::uint64_t offset, std::span<char> buffer) override {
            asked_.push_back(buffer.size());
            return file_->read(offset, buffer);
        }

    private:
        std::unique_ptr<ReadableFile> file_;
        std::vector<std::size_t>& asked_;
    };
};

TEST_F(UsageIngestTest, AFileIsReadInPiecesOfFourMebibytes) {
    // One line lies across the border of the first two pieces.
    const std::size_t piece = 4'194'304;
    const std::string line = messageLine("across", 10);
    const std::string content = std::string(piece - line.size() / 2, '\n') + line
                                + std::string(piece, '\n') + messageLine("last", 100);
    MeasuringFileSystem measuring;
    measuring.addFile(pathOf(name), content, now);
    EXPECT_EQ(UsageCalculator(measuring).compute(settings, now).weekly.weightedTokens, 110);
    EXPECT_EQ(measuring.bytesRead(), content.size());
    EXPECT_THAT(measuring.asked, testing::ElementsAre(piece, piece, piece, piece))
        << "the last one finds the end";
}

TEST_F(UsageIngestTest, AFileGoneStaleIsForgottenWithItsSamples) {
    // The last message is dated after the file's last change, as a clock set back leaves it.
    write(name, messageLine("a", 1, advancedBy(now, 86'400)));
    now = advancedBy(now, 622'799);
    EXPECT_EQ(tokensNow(), 1);
    now = advancedBy(now, 1);
    EXPECT_EQ(tokensNow(), 0);

    file().modified = now;
    EXPECT_EQ(tokensNow(), 1);
    EXPECT_EQ(files.bytesRead(), file().content.size()) << "it is read from its start";
}

TEST_F(UsageIngestTest, AFileThatIsGoneCountsUntilItsLastChangeIsOld) {
    write(name, messageLine("a", 1, advancedBy(now, 86'400)));
    now = advancedBy(now, 622'799);
    EXPECT_EQ(tokensNow(), 1);
    files.remove(pathOf(name));
    EXPECT_EQ(tokensNow(), 1);
    now = advancedBy(now, 1);
    EXPECT_EQ(tokensNow(), 0);
}

/// What may happen to a file besides being read on: its time of change is noted in any case.
struct Touch {
    const char* what;
    void (*change)(FakeFileSystem::File&);
};

class UsageTouchTest : public UsageIngestTest, public testing::WithParamInterface<Touch> {};

TEST_P(UsageTouchTest, TheTimeOfTheLastChangeIsNotedWhateverBecomesOfTheFile) {
    const Timestamp sampleTime = advancedBy(now, 86'400);
    write(name, messageLine("a", 1, sampleTime));
    write("other.jsonl", "").modified = advancedBy(now, 1'000'000);
    compute();
    file().modified = advancedBy(now, 3'600);
    GetParam().change(file());
    now = advancedBy(now, 600'000);
    EXPECT_EQ(tokensNow(), 1);

    files.remove(pathOf(name));
    now = advancedBy(now, 26'399);
    EXPECT_EQ(tokensNow(), 1) << "later than its first change allows";
    now = advancedBy(now, 1);
    EXPECT_EQ(tokensNow(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Files, UsageTouchTest,
    testing::Values(Touch{"SameSize", [](FakeFileSystem::File&) {}},
                    Touch{"Grown", [](FakeFileSystem::File& file) { file.content += "\n"; }},
                    Touch{"GrownButClosed",
                          [](FakeFileSystem::File& file) {
                              file.content += "\n";
                              file.readable = false;
                          }},
                    Touch{"GrownButDamaged",
                          [](FakeFileSystem::File& file) {
                              file.failsAt = file.content.size();
                              file.content += "\n";
                          }}),
    [](const testing::TestParamInfo<Touch>& touch) { return touch.param.what; });

TEST_F(UsageIngestTest, ARootThatCannotBeListedLeavesEverythingAsItWas) {
    write(name, messageLine("a", 1, advancedBy(now, 86'400)));
    EXPECT_EQ(peak(), 1);
    now = advancedBy(now, 622'800);
    settings.claudeRoot = "/nowhere";
    EXPECT_EQ(tokensNow(), 1) << "although the file is stale by now";

    settings.claudeRoot = root;
    EXPECT_EQ(tokensNow(), 0);
}

TEST_F(UsageIngestTest, AnEmptyRootIsNoSuchCase) {
    write(name, messageLine("a", 1, advancedBy(now, 86'400)));
    compute();
    now = advancedBy(now, 622'800);
    settings.claudeRoot = "/empty";
    files.addDirectory("/empty");
    EXPECT_EQ(tokensNow(), 0);
}

/// `count` messages of one token each, all at `time`.
std::string messages(const std::string& prefix, int count, Timestamp time) {
    std::string content;
    for (int i = 0; i < count; ++i) {
        content += messageLine(prefix + std::to_string(i), 1, time);
    }
    return content;
}

/// Whether old samples are still held shows when the clock is set back.
class UsagePruneTest : public UsageIngestTest {
protected:
    const Timestamp start = now;

    /// The old samples that count at `start`, after a later computation found `count` in all.
    double oldSamplesLeft(int oldCount, int count) {
        const Timestamp later = advancedBy(start, 700'000);
        write(name, messages("old", oldCount, start)).modified = later;
        EXPECT_EQ(weeklyTokens(), oldCount);
        append(name, messages("new", count - oldCount, later));
        now = later;
        EXPECT_EQ(weeklyTokens(), count - oldCount);
        now = start;
        return weeklyTokens();
    }
};

TEST_F(UsagePruneTest, OldSamplesAreKeptUpTo4096) {
    EXPECT_EQ(oldSamplesLeft(4'000, 4'096), 4'000);
}

TEST_F(UsagePruneTest, Above4096TheOldOnesGo) {
    EXPECT_EQ(oldSamplesLeft(4'000, 4'097), 0);
}

TEST_F(UsagePruneTest, SamplesThatStillCountAreNeverPruned) {
    write(name, messages("m", 5'000, now));
    EXPECT_EQ(weeklyTokens(), 5'000);
    append(name, messages("n", 10, now));
    EXPECT_EQ(weeklyTokens(), 5'010);
}

TEST_F(UsagePruneTest, ASampleExactlyAtTheHorizonIsPruned) {
    write(name, messages("old", 1, start) + messages("new", 4'095, advancedBy(start, 60)));
    EXPECT_EQ(peak(), 4'096);
    now = advancedBy(start, 622'800);
    file().modified = now;
    append(name, messages("last", 1, now));
    EXPECT_EQ(peak(), 4'095);
    now = advancedBy(start, 1);
    EXPECT_EQ(peak(), 4'095) << "the block no longer begins with it";
}

TEST_F(UsagePruneTest, APrunedMessagesIdStaysUsedUp) {
    write(name, messages("m", 4'097, start)).modified = advancedBy(start, 700'000);
    EXPECT_EQ(weeklyTokens(), 4'097);
    now = advancedBy(start, 700'000);
    append(name, messages("n", 1, now) + messageLine("m7", 50, now));
    EXPECT_EQ(weeklyTokens(), 1);
}

} // namespace
} // namespace sallowmere
