// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageTest.h"

namespace sallowmere {
namespace {

using UsageCalculatorTest = UsageTest;

TEST_F(UsageCalculatorTest, WithoutTranscriptsEverythingIsZero) {
    const UsageSnapshot snapshot = compute();

    EXPECT_EQ(snapshot.fiveHour, (UsageWindow{0, 1, {}, {}}));
    EXPECT_EQ(snapshot.weekly, (UsageWindow{0, 1, {}, {}}));
    EXPECT_EQ(snapshot.weeklyFable, (UsageWindow{0, 1, {}, {}}));
    EXPECT_EQ(snapshot.scopedLabel, u"Fable");
    EXPECT_EQ(snapshot.computedAt, now);
}

TEST_F(UsageCalculatorTest, AMessageCountsInEveryWindowItBelongsTo) {
    write("project/session.jsonl", lineOf({.time = R"("2026-06-10T11:00:00.000Z")",
                                           .model = R"("claude-opus-4-1")",
                                           .usage = inputTokens("70")}));
    const UsageSnapshot snapshot = compute();

    EXPECT_EQ(snapshot.fiveHour, (UsageWindow{70, 70, 14'400, {}}));
    EXPECT_EQ(snapshot.weekly, (UsageWindow{70, 70, {}, {}}));
    EXPECT_EQ(snapshot.weeklyFable, (UsageWindow{70, 70, {}, {}}));
}

TEST_F(UsageCalculatorTest, OnlyFilesWithExactlyTheTranscriptsExtensionAreRead) {
    const std::pair<const char*, bool> names[] = {
        {"session.jsonl", true},      {"two.dots.jsonl", true}, {"session.JSONL", false},
        {"session.Jsonl", false},     {"session.json", false},  {"session.jsonl.bak", false},
        {"session.jsonlx", false},    {"jsonl", false},         {"session.jsonl~", false},
        {"session.meta.json", false}, {"sessionjsonl", false},
    };
    for (const auto& [name, isRead] : names) {
        const FakeFileSystem::File& file = write(name, messageLine("m", 1));
        EXPECT_EQ(computeAnew().weekly.weightedTokens, isRead ? 1 : 0) << name;
        EXPECT_EQ(files.opened().size(), isRead ? 1U : 0U) << name << ' ' << file.content.size();
        files.remove(pathOf(name));
        files.forget();
    }
}

TEST_F(UsageCalculatorTest, DirectoriesAreWalkedToAnyDepth) {
    write("top.jsonl", messageLine("a", 1));
    write("project/session.jsonl", messageLine("b", 10));
    write("project/session/subagents/agent-1.jsonl", messageLine("c", 100));
    EXPECT_EQ(weeklyTokens(), 111);
}

TEST_F(UsageCalculatorTest, ManyNestedDirectoriesAreNoTrouble) {
    std::string deep;
    for (int i = 0; i < 500; ++i) {
        deep += "d/";
    }
    write(deep + "session.jsonl", messageLine("a", 1));
    EXPECT_EQ(weeklyTokens(), 1);
}

TEST_F(UsageCalculatorTest, HiddenFilesAreSkippedAndHiddenDirectoriesNotEntered) {
    write(".hidden.jsonl", messageLine("a", 1));
    write(".jsonl", messageLine("b", 10));
    write("project/.hidden.jsonl", messageLine("c", 100));
    write(".hidden/session.jsonl", messageLine("d", 1'000));
    write("project/.hidden/deeper/session.jsonl", messageLine("e", 10'000));
    EXPECT_EQ(weeklyTokens(), 0);
    EXPECT_THAT(files.opened(), testing::IsEmpty());
    EXPECT_THAT(files.listed(), testing::UnorderedElementsAre(root, pathOf("project")));
}

TEST_F(UsageCalculatorTest, LinksToFilesAreNotTaken) {
    files.addFile("/elsewhere/session.jsonl", messageLine("a", 1), now);
    files.addLink(pathOf("linked.jsonl"), "/elsewhere/session.jsonl");
    EXPECT_EQ(weeklyTokens(), 0);
    EXPECT_THAT(files.opened(), testing::IsEmpty());
}

TEST_F(UsageCalculatorTest, LinksToDirectoriesAreNotFollowed) {
    files.addFile("/elsewhere/session.jsonl", messageLine("a", 1), now);
    files.addLink(pathOf("linked"), "/elsewhere");
    files.addLink(pathOf("circle"), root);
    EXPECT_EQ(weeklyTokens(), 0);
    EXPECT_THAT(files.listed(), testing::ElementsAre(root));
}

TEST_F(UsageCalculatorTest, ARootThatIsItselfALinkIsWalked) {
    files.addFile("/elsewhere/project/session.jsonl", messageLine("a", 1), now);
    files.addLink("/home/user/transcripts", "/elsewhere");
    settings.claudeRoot = "/home/user/transcripts";
    EXPECT_EQ(weeklyTokens(), 1);
}

TEST_F(UsageCalculatorTest, OnlyRegularFilesAreRead) {
    write("fifo.jsonl", messageLine("a", 1)).type = EntryType::other;
    write("directory.jsonl/session.jsonl", messageLine("b", 10));
    EXPECT_EQ(weeklyTokens(), 10);
    EXPECT_THAT(files.opened(), testing::ElementsAre(pathOf("directory.jsonl/session.jsonl")));
}

/// Lists an entry that is gone, or became something else, by the time it is asked for.
class ChangingFileSystem : public FakeFileSystem {
public:
    std::optional<FileStatus> status(const std::string& path, Links links) const override {
        if (path.ends_with("gone.jsonl")) {
            return std::nullopt;
        }
        std::optional<FileStatus> status = FakeFileSystem::status(path, links);
        if (status && links == Links::keep && path.ends_with("replaced.jsonl")) {
            status->type = EntryType::link;
        }
        return status;
    }
};

TEST_F(UsageCalculatorTest, AFileThatChangesWhileItIsLookedAtIsPassedOver) {
    ChangingFileSystem changing;
    changing.addFile(pathOf("a/gone.jsonl"), messageLine("a", 1), now);
    changing.addFile(pathOf("b/replaced.jsonl"), messageLine("b", 10), now);
    changing.addFile(pathOf("c/session.jsonl"), messageLine("c", 100), now);
    EXPECT_EQ(UsageCalculator(changing).compute(settings, now).weekly.weightedTokens, 100);
    EXPECT_THAT(changing.opened(), testing::ElementsAre(pathOf("c/session.jsonl")));
}

TEST_F(UsageCalculatorTest, ASubdirectoryThatCannotBeListedCostsOnlyItself) {
    write("closed/session.jsonl", messageLine("a", 1));
    write("open/session.jsonl", messageLine("b", 10));
    files.forbidListing(pathOf("closed"));
    EXPECT_EQ(weeklyTokens(), 10);
}

TEST_F(UsageCalculatorTest, AFileMustHaveChangedLaterThanTheHorizon) {
    const std::pair<std::chrono::microseconds, bool> ages[] = {
        {std::chrono::microseconds(-1), false},
        {std::chrono::microseconds(0), false},
        {std::chrono::microseconds(1), true},
    };
    for (const auto& [sinceHorizon, isRead] : ages) {
        write("session.jsonl", messageLine("m", 1)).modified = horizon() + sinceHorizon;
        files.forget();
        EXPECT_EQ(computeAnew().weekly.weightedTokens, isRead ? 1 : 0) << sinceHorizon.count();
        EXPECT_EQ(files.opened().size(), isRead ? 1U : 0U) << sinceHorizon.count();
    }
}

TEST_F(UsageCalculatorTest, ASampleMustBeLaterThanTheHorizon) {
    using std::chrono::milliseconds;
    write("session.jsonl", messageLine("before", 1, horizon() - milliseconds(1))
                               + messageLine("exactly", 10, horizon())
                               + messageLine("after", 100, horizon() + milliseconds(1)));
    EXPECT_EQ(peak(), 100);
}

TEST_F(UsageCalculatorTest, SamplesLeaveWhenTheHorizonReachesThem) {
    write("session.jsonl", messageLine("a", 10, now));
    EXPECT_EQ(peak(), 10);

    files.file(pathOf("session.jsonl")).modified = advancedBy(now, 86'400);
    now = advancedBy(now, 622'799.999);
    EXPECT_EQ(peak(), 10);

    now = advancedBy(now, 0.001);
    EXPECT_EQ(peak(), 1);
}

TEST_F(UsageCalculatorTest, WhenTheClockIsSetBackOldSamplesCountAgain) {
    write("session.jsonl", messageLine("a", 10, now)).modified = advancedBy(now, 1'000'000);
    const Timestamp earlier = now;
    EXPECT_EQ(peak(), 10);
    now = advancedBy(now, 700'000);
    EXPECT_EQ(peak(), 1);
    now = earlier;
    EXPECT_EQ(peak(), 10);
}

TEST_F(UsageCalculatorTest, AMessageInTwoFilesCountsOnce) {
    write("a.jsonl", messageLine("same", 5) + messageLine("original", 10));
    write("b.jsonl", messageLine("same", 5) + messageLine("fork", 100));
    EXPECT_EQ(weeklyTokens(), 115);
    EXPECT_EQ(weeklyTokens(), 115) << "on the next computation too";
}

TEST_F(UsageCalculatorTest, TheCopyOfAMessageThatWasThereFirstStays) {
    write("b.jsonl", messageLine("same", 5));
    EXPECT_EQ(weeklyTokens(), 5);
    write("a.jsonl", messageLine("same", 1'000) + messageLine("fork", 10));
    EXPECT_EQ(weeklyTokens(), 15);
}

TEST_F(UsageCalculatorTest, ACopyTooOldForTheHorizonDoesNotHideAnother) {
    write("a.jsonl", messageLine("same", 5, horizon()));
    write("b.jsonl", messageLine("same", 7, now));
    EXPECT_EQ(weeklyTokens(), 7);
}

TEST_F(UsageCalculatorTest, WhenTheFirstCopyGetsTooOldALaterOneTakesItsPlace) {
    write("a.jsonl", messageLine("same", 5, now));
    EXPECT_EQ(weeklyTokens(), 5);
    write("b.jsonl", messageLine("same", 7, advancedBy(now, 3'600)));
    EXPECT_EQ(weeklyTokens(), 5);

    for (const char* name : {"a.jsonl", "b.jsonl"}) {
        files.file(pathOf(name)).modified = advancedBy(now, 86'400);
    }
    now = advancedBy(now, 622'800);
    EXPECT_EQ(peak(), 7);
}

TEST_F(UsageCalculatorTest, SumsRunInTimeOrderWhateverTheOrderOfTheLines) {
    // One is lost beside ten quadrillions, two are not.
    const auto line = [this](const char* id, const char* tokens, double secondsAgo) {
        return lineOf({.id = quoted(id),
                       .time = quoted(spelled(advancedBy(now, -secondsAgo))),
                       .model = R"("opus")",
                       .usage = inputTokens(tokens)});
    };
    write("a.jsonl", line("third", "1", 10) + line("second", "1", 20));
    write("b.jsonl", line("first", "10000000000000000", 30));
    const UsageSnapshot largestFirst = compute();
    EXPECT_EQ(largestFirst.weekly.weightedTokens, 1e16);
    EXPECT_EQ(largestFirst.weeklyFable.value().weightedTokens, 1e16);
    EXPECT_EQ(largestFirst.fiveHour.weightedTokens, 1e16);
    EXPECT_EQ(largestFirst.fiveHour.limit, 1e16);

    write("b.jsonl", line("last", "10000000000000000", 5));
    const UsageSnapshot largestLast = computeAnew();
    EXPECT_EQ(largestLast.weekly.weightedTokens, 1e16 + 2);
    EXPECT_EQ(largestLast.weeklyFable.value().weightedTokens, 1e16 + 2);
    EXPECT_EQ(largestLast.fiveHour.weightedTokens, 1e16 + 2);
    EXPECT_EQ(largestLast.fiveHour.limit, 1e16 + 2);
}

TEST_F(UsageCalculatorTest, ALateLineIsSummedAtItsTimeNotAtItsArrival) {
    write("a.jsonl",
          messageLine("b", 1, advancedBy(now, -20)) + messageLine("c", 1, advancedBy(now, -10)));
    EXPECT_EQ(weeklyTokens(), 2);
    append("a.jsonl", lineOf({.id = R"("a")",
                              .time = quoted(spelled(advancedBy(now, -30))),
                              .usage = inputTokens("10000000000000000")}));
    EXPECT_EQ(weeklyTokens(), 1e16);
}

TEST_F(UsageCalculatorTest, MessagesOfEqualTimeAreSummedInTheOrderOfTheirLines) {
    const auto line = [](const char* id, const char* tokens) {
        return lineOf({.id = quoted(id), .usage = inputTokens(tokens)});
    };
    const std::string huge = line("huge", "10000000000000000");
    const std::string ones = line("b", "1") + line("a", "1");
    write("a.jsonl", huge + ones);
    EXPECT_EQ(computeAnew().weekly.weightedTokens, 1e16);
    write("a.jsonl", ones + huge);
    EXPECT_EQ(computeAnew().weekly.weightedTokens, 1e16 + 2);
}

TEST_F(UsageCalculatorTest, TheBlocksStartIsNeverTakenFromTheChainAgain) {
    write("a.jsonl", messageLine("noon", 1, at("2026-06-10T12:00:00Z")));
    compute();

    // By the chain alone the block would now run from 10:00 to 15:00.
    write("b.jsonl", messageLine("ten", 10, at("2026-06-10T10:00:00Z"))
                         + messageLine("four", 100, at("2026-06-10T16:00:00Z")));
    now = at("2026-06-10T16:30:00Z");
    const UsageWindow fiveHour = compute().fiveHour;
    EXPECT_EQ(fiveHour.weightedTokens, 101);
    EXPECT_EQ(fiveHour.resetsIn, 1'800);
    EXPECT_EQ(computeAnew().fiveHour.resetsIn, 16'200) << "which a fresh calculator does follow";
}

TEST_F(UsageCalculatorTest, TheBlocksStartOutlivesItsSamples) {
    write("a.jsonl", messageLine("noon", 1, at("2026-06-10T12:00:00Z")));
    compute();
    files.remove(pathOf("a.jsonl"));
    now = at("2026-06-18T12:00:00Z");
    EXPECT_EQ(compute().fiveHour, (UsageWindow{0, 1, {}, {}}));

    // Set back, the clock lies in the old block once more.
    now = at("2026-06-10T12:30:00Z");
    EXPECT_EQ(compute().fiveHour, (UsageWindow{0, 1, 16'200, {}}));
}

TEST_F(UsageCalculatorTest, AnEndedBlockShowsNothingUntilANewSampleStartsOne) {
    write("a.jsonl", messageLine("noon", 7, at("2026-06-10T12:00:00Z")));
    now = at("2026-06-10T16:59:59Z");
    EXPECT_EQ(compute().fiveHour, (UsageWindow{7, 7, 1, {}}));
    now = at("2026-06-10T17:00:00Z");
    EXPECT_EQ(compute().fiveHour, (UsageWindow{0, 7, {}, {}}));

    append("a.jsonl", messageLine("evening", 3, at("2026-06-10T18:00:00Z")));
    now = at("2026-06-10T18:30:00Z");
    EXPECT_EQ(compute().fiveHour, (UsageWindow{3, 7, 16'200, {}}));
}

} // namespace
} // namespace sallowmere
