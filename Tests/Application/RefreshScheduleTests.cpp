// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/RefreshEngineTest.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

/// When the engine does what.
class RefreshSchedule : public RefreshEngineTest {
protected:
    RefreshSchedule() {
        processes.whileListing = [this] { scans.push_back(time()); };
    }

    double time() const { return secondsBetween(start, queue.now()); }

    void watchUsage() {
        QObject::connect(state.get(), &AppState::usageWillChange, state.get(),
                         [this] { computations.push_back(time()); });
    }

    static std::vector<double> every(int seconds, int until) {
        std::vector<double> times;
        for (int time = 0; time <= until; time += seconds) {
            times.push_back(time);
        }
        return times;
    }

    /// When sessions were scanned and usage was handed over, in seconds since the start.
    std::vector<double> scans;
    std::vector<double> computations;
};

TEST_F(RefreshSchedule, BeginsWithSessionsThenOfficialFiguresThenUsage) {
    addTranscript("a", {promptIn("/w", "s1")});
    begin();
    watchUsage();
    EXPECT_EQ(workQueue.waiting(), 3U);
    EXPECT_THAT(scans, IsEmpty());
    workQueue.runOne();
    EXPECT_THAT(scans, SizeIs(1));
    EXPECT_THAT(fetches, IsEmpty());
    EXPECT_THAT(state->sessions(), IsEmpty());
    queue.runPosted();
    EXPECT_THAT(state->sessions(), SizeIs(1));
    workQueue.runOne();
    EXPECT_THAT(fetches, SizeIs(1));
    EXPECT_EQ(queue.posted(), 0U);
    workQueue.runOne();
    EXPECT_THAT(computations, IsEmpty());
    queue.runPosted();
    EXPECT_THAT(computations, SizeIs(1));
    EXPECT_EQ(workQueue.waiting(), 0U);
}

TEST_F(RefreshSchedule, ScansEveryTwoSecondsComputesEveryTwentyAndAsksEverySixty) {
    std::vector<double> asked;
    begin();
    watchUsage();
    settle();
    for (int i = 0; i <= 240; ++i) {
        for (const Fetch& fetch : std::exchange(fetches, {})) {
            asked.push_back(time());
            fetch.completion(std::nullopt);
        }
        settle();
        queue.advance(0.5);
        settle();
    }
    EXPECT_THAT(scans, ElementsAreArray(every(2, 120)));
    EXPECT_THAT(computations, ElementsAreArray(every(20, 120)));
    EXPECT_THAT(asked, ElementsAreArray(every(60, 120)));
}

TEST_F(RefreshSchedule, DoesNotDependOnTheTimeOfDay) {
    beginAndSettle();
    queue.setClock(advancedBy(start, -3'600));
    pass(20);
    queue.setClock(advancedBy(start, 86'400));
    pass(20);
    EXPECT_THAT(scans, SizeIs(21));
}

TEST_F(RefreshSchedule, SkipsTurnsWhileAJobWaits) {
    begin();
    queue.advance(50);
    EXPECT_EQ(workQueue.waiting(), 3U);
}

TEST_F(RefreshSchedule, DoesNotMakeUpForSkippedTurns) {
    begin();
    queue.advance(51);
    settle();
    EXPECT_THAT(scans, SizeIs(1));
    EXPECT_EQ(workQueue.waiting(), 0U);
    queue.advance(0.5);
    EXPECT_EQ(workQueue.waiting(), 0U);
    queue.advance(0.5);
    EXPECT_EQ(workQueue.waiting(), 1U);
}

TEST_F(RefreshSchedule, SkipsTurnsWhileAScanRuns) {
    begin();
    processes.whileListing = [this] {
        const std::size_t waiting = workQueue.waiting();
        queue.advance(4);
        EXPECT_EQ(workQueue.waiting(), waiting);
    };
    workQueue.runOne();
}

TEST_F(RefreshSchedule, SkipsTurnsUntilTheResultWasHandedOver) {
    begin();
    std::size_t waitingAfterTurns = 99;
    QObject::connect(state.get(), &AppState::permissionRequestsWillChange, state.get(), [&] {
        queue.advance(4);
        waitingAfterTurns = workQueue.waiting();
    });
    QObject::connect(state.get(), &AppState::usageWillChange, state.get(), [&] {
        queue.advance(40);
        // The scan has been handed over before.
        EXPECT_EQ(workQueue.waiting(), 1U);
    });
    workQueue.runOne();
    queue.runPosted();
    EXPECT_EQ(waitingAfterTurns, 2U);
    QObject::disconnect(state.get(), &AppState::permissionRequestsWillChange, nullptr, nullptr);
    workQueue.runAll();
    queue.runPosted();
}

TEST_F(RefreshSchedule, LetsOtherJobsGoOnWhileOneIsUnderWay) {
    begin();
    workQueue.runOne();
    queue.runPosted();
    // Official figures and usage still wait.
    queue.advance(2);
    EXPECT_EQ(workQueue.waiting(), 3U);
}

TEST_F(RefreshSchedule, AsksOneQuestionOfTheServiceAtATime) {
    beginAndSettle();
    pass(300);
    ASSERT_THAT(fetches, SizeIs(1));
    fetches[0].completion(std::nullopt);
    settle();
    EXPECT_THAT(fetches, SizeIs(1));
    pass(59.5);
    EXPECT_THAT(fetches, SizeIs(1));
    pass(0.5);
    EXPECT_THAT(fetches, SizeIs(2));
}

TEST_F(RefreshSchedule, HasAskedUntilTheWorkQueueHeardTheAnswer) {
    beginAndSettle();
    queue.advance(59);
    settle();
    // The turn's job waits before the answer does.
    queue.advance(1);
    fetches.at(0).completion(std::nullopt);
    settle();
    EXPECT_THAT(fetches, SizeIs(1));
    pass(60);
    EXPECT_THAT(fetches, SizeIs(2));
}

TEST_F(RefreshSchedule, GivesTheServiceEightSeconds) {
    beginAndSettle();
    ASSERT_THAT(fetches, SizeIs(1));
    EXPECT_EQ(fetches[0].timeout, 8.0);
}

TEST_F(RefreshSchedule, NeverAsksTheServiceWhenThatIsSwitchedOff) {
    settings.usageAPIEnabled = false;
    begin();
    EXPECT_EQ(workQueue.waiting(), 2U);
    settle();
    queue.advance(60);
    // A scan and a computation.
    EXPECT_EQ(workQueue.waiting(), 2U);
    pass(180);
    EXPECT_THAT(fetches, IsEmpty());
}

/// What lives how long.
class RefreshLifetime : public RefreshSchedule {};

TEST_F(RefreshLifetime, DoesNoneOfTheWaitingJobsWithoutTheEngine) {
    begin();
    watchUsage();
    engine.reset();
    queue.advance(300);
    EXPECT_EQ(workQueue.waiting(), 3U);
    settle();
    EXPECT_THAT(scans, IsEmpty());
    EXPECT_THAT(fetches, IsEmpty());
    EXPECT_THAT(computations, IsEmpty());
    EXPECT_THAT(files.listed(), IsEmpty());
}

TEST_F(RefreshLifetime, EndsTheEngineOnTheMainThread) {
    begin();
    engine.reset();
    EXPECT_FALSE(heldByEngine.expired());
    queue.runPosted();
    EXPECT_TRUE(heldByEngine.expired());
}

TEST_F(RefreshLifetime, EndsTheEngineWithAMainThreadThatRunsNothingMore) {
    const auto held = std::make_shared<int>();
    {
        FakeMainQueue ending(start);
        RefreshEngine::create(*state, {ending.clock(), ending, workQueue, files, processes, home,
                                       [held](double, const UsageAPI::Completion&) {}});
        EXPECT_EQ(ending.posted(), 1U);
        EXPECT_EQ(held.use_count(), 2);
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(RefreshLifetime, FinishesAJobThatRunsWhenTheEngineIsLetGo) {
    addTranscript("a", {promptIn("/w", "s1")});
    begin();
    processes.whileListing = [this] { engine.reset(); };
    workQueue.runOne();
    EXPECT_FALSE(heldByEngine.expired());
    EXPECT_THAT(state->sessions(), IsEmpty());
    queue.runPosted();
    EXPECT_THAT(titles(), ElementsAre("Hello"));
    EXPECT_TRUE(heldByEngine.expired());
}

TEST_F(RefreshLifetime, HandsNothingToAModelThatIsGoneAndGoesOn) {
    begin();
    state.reset();
    settle();
    EXPECT_THAT(scans, SizeIs(1));
    queue.advance(20);
    // The next scan, and the next computation.
    EXPECT_EQ(workQueue.waiting(), 2U);
    settle();
    EXPECT_THAT(scans, SizeIs(2));
}

TEST_F(RefreshLifetime, HandsNothingToAModelThatGoesBeforeTheDelivery) {
    begin();
    workQueue.runAll();
    state.reset();
    queue.runPosted();
    queue.advance(20);
    EXPECT_EQ(workQueue.waiting(), 2U);
}

TEST_F(RefreshLifetime, IgnoresAnAnswerOfTheServiceThatComesTooLate) {
    beginAndSettle();
    engine.reset();
    settle();
    EXPECT_TRUE(heldByEngine.expired());
    fetches.at(0).completion(officialFigures(0.5, start));
    EXPECT_EQ(workQueue.waiting(), 0U);
}

TEST_F(RefreshLifetime, IgnoresAnAnswerThatWaitsWhenTheEngineGoes) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    EXPECT_EQ(workQueue.waiting(), 1U);
    engine.reset();
    queue.runPosted();
    EXPECT_TRUE(heldByEngine.expired());
    settle();
}

TEST_F(RefreshLifetime, DoesNotKeepTheModelNorDoesTheModelKeepTheEngine) {
    beginAndSettle();
    engine.reset();
    queue.runPosted();
    EXPECT_TRUE(heldByEngine.expired());
    scan({session("a")});
    EXPECT_THAT(state->sessions(), SizeIs(1));
}

} // namespace
} // namespace sallowmere
