// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxWorkQueue.h"

#include "Support/AtEnd.h"
#include "System/ChildProcess.h"
#include "System/NumberingThreads.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <future>
#include <iterator>
#include <memory>
#include <numeric>
#include <optional>
#include <sstream>
#include <thread>
#include <vector>

#include <unistd.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::string contentOf(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The nice value in what a file "stat" of the proc file system holds.
int niceIn(const std::string& stat) {
    // The name before may contain anything, but ends with the last parenthesis.
    std::istringstream fields(stat.substr(stat.rfind(')') + 1));
    constexpr int before = 16;
    std::string skipped;
    for (int i = 0; i < before; ++i) {
        fields >> skipped;
    }
    int nice = 99;
    fields >> nice;
    return nice;
}

std::string fileOfThread(const char* name) {
    return contentOf("/proc/self/task/" + std::to_string(gettid()) + '/' + name);
}

/// What a whole process that has the default priority would have a few steps down.
int lowered(int nice) {
    return std::min(nice + 10, 19);
}

class LinuxWorkQueueTest : public testing::Test {
protected:
    /// Runs on the queue's thread and gives its result here; whatever was posted before has run.
    template <typename Function>
    auto onQueue(Function function) {
        std::promise<decltype(function())> promise;
        auto result = promise.get_future();
        queue->post([&] { promise.set_value(function()); });
        return result.get();
    }

    void runPosted() {
        onQueue([] { return true; });
    }

    std::optional<LinuxWorkQueue> queue{std::in_place, "sallowmere.refresh"};
};

TEST_F(LinuxWorkQueueTest, RunsWorkInTheOrderItWasPosted) {
    std::vector<int> ran;
    std::vector<int> expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    for (const int number : expected) {
        queue->post([&ran, number] { ran.push_back(number); });
    }
    runPosted();
    EXPECT_THAT(ran, ElementsAreArray(expected));
}

TEST_F(LinuxWorkQueueTest, RunsAllWorkOnOneThreadOfItsOwn) {
    const std::thread::id first = onQueue([] { return std::this_thread::get_id(); });
    EXPECT_NE(first, std::this_thread::get_id());
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(onQueue([] { return std::this_thread::get_id(); }), first);
    }
}

TEST_F(LinuxWorkQueueTest, KeepsTheOrderOfEachOfSeveralThreads) {
    NumberingThreads threads(*queue);
    threads.join();
    runPosted();
    threads.expectOrder();
}

TEST_F(LinuxWorkQueueTest, RunsWhatWorkPostsAfterWhatWaits) {
    std::vector<int> ran;
    std::promise<void> ended;
    std::promise<void> allPosted;
    queue->post([&] {
        allPosted.get_future().wait();
        queue->post([&] {
            ran.push_back(3);
            ended.set_value();
        });
        ran.push_back(1);
    });
    queue->post([&] { ran.push_back(2); });
    allPosted.set_value();
    ended.get_future().wait();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(LinuxWorkQueueTest, LetsGoOfWhatWorkHoldsBeforeTheNext) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    queue->post([held = std::move(held)] { EXPECT_NE(held, nullptr); });
    EXPECT_TRUE(onQueue([&] { return watched.expired(); }));
}

TEST_F(LinuxWorkQueueTest, LetsGoOfWhatWorkHoldsWhileNothingElseIsPosted) {
    std::promise<void> gone;
    auto end = std::make_shared<AtEnd>([&] { gone.set_value(); });
    queue->post([end = std::move(end)] {});
    gone.get_future().wait();
}

TEST_F(LinuxWorkQueueTest, MayBePostedToByTheEndOfWhatWorkHolds) {
    std::promise<void> ran;
    auto end = std::make_shared<AtEnd>([&] { queue->post([&] { ran.set_value(); }); });
    queue->post([end = std::move(end)] {});
    ran.get_future().wait();
}

TEST_F(LinuxWorkQueueTest, WaitsForTheWorkThatHasBegunWhenItIsDestroyed) {
    std::promise<void> begun;
    std::promise<void> mayEnd;
    bool ended = false;
    queue->post([&] {
        begun.set_value();
        mayEnd.get_future().wait();
        ended = true;
    });
    begun.get_future().wait();
    std::thread destroying([&] { queue.reset(); });
    mayEnd.set_value();
    destroying.join();
    EXPECT_TRUE(ended);
}

TEST_F(LinuxWorkQueueTest, DropsWhatWaitsWhenItIsDestroyed) {
    std::vector<int> ran;
    const auto held = std::make_shared<int>();
    std::promise<void> begun;
    std::promise<void> mayEnd;
    queue->post([&] {
        begun.set_value();
        mayEnd.get_future().wait();
        ran.push_back(1);
    });
    begun.get_future().wait();
    LinuxWorkQueue& stopping = *queue;
    // The end of the first to be dropped posts yet another.
    auto end =
        std::make_shared<AtEnd>([&, held] { stopping.post([&, held] { ran.push_back(3); }); });
    queue->post([&, end = std::move(end)] { ran.push_back(2); });
    std::thread destroying([&] { stopping.stop(); });
    // Nothing that is posted runs once the thread was told to end, which cannot be seen from here
    // but by posting.
    bool taken = true;
    while (taken) {
        const std::weak_ptr<int> watched = [&] {
            const auto probe = std::make_shared<int>();
            stopping.post([probe] { FAIL() << "was dropped"; });
            return std::weak_ptr<int>(probe);
        }();
        taken = !watched.expired();
    }
    mayEnd.set_value();
    destroying.join();
    queue.reset();
    EXPECT_THAT(ran, ElementsAre(1));
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(LinuxWorkQueueTest, DropsWhatIsPostedOnceItWasStopped) {
    std::vector<int> ran;
    const auto held = std::make_shared<int>();
    queue->stop();
    queue->post([&, held] { ran.push_back(1); });
    EXPECT_EQ(held.use_count(), 1);
    queue->stop();
    queue.reset();
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(LinuxWorkQueueTest, MayBeDestroyedBeforeItsThreadRuns) {
    for (int i = 0; i < 100; ++i) {
        const LinuxWorkQueue brief("brief");
    }
}

TEST_F(LinuxWorkQueueTest, NamesItsThread) {
    EXPECT_EQ(onQueue([] { return fileOfThread("comm"); }), "sallowmere.refr\n");
    queue.emplace("short");
    EXPECT_EQ(onQueue([] { return fileOfThread("comm"); }), "short\n");
}

TEST_F(LinuxWorkQueueTest, HasALowerPriorityThanTheRestOfTheProgram) {
    const int own = niceIn(fileOfThread("stat"));
    EXPECT_EQ(onQueue([] { return niceIn(fileOfThread("stat")); }), lowered(own));
    EXPECT_EQ(niceIn(fileOfThread("stat")), own);
}

TEST_F(LinuxWorkQueueTest, GivesItsPriorityToTheProgramsItStarts) {
    const Outcome outcome = onQueue([] {
        return run({"/bin/cat", {"cat", "/proc/self/stat"}, {}, {}});
    });
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(niceIn(outcome.output), lowered(niceIn(fileOfThread("stat"))));
}

} // namespace
} // namespace sallowmere
