// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Qt/EventLoopQueue.h"

#include "Support/AtEnd.h"
#include "System/EventLoop.h"
#include "System/NumberingThreads.h"

#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <numeric>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

/// Seconds after which a timer is due, however little that is, and ones that no test lives to see.
constexpr double soon = 0.001;
constexpr double never = 86'400;

class EventLoopQueueTest : public testing::Test {
protected:
    /// Runs the loop until what was posted before this has been run.
    bool runPosted() {
        bool reached = false;
        queue->post([&] { reached = true; });
        return EventLoop::runUntil([&] { return reached; });
    }

    /// Work that notes a number.
    Work note(int number) {
        return [this, number] { noted.push_back(number); };
    }

    EventLoop loop;
    std::optional<EventLoopQueue> queue{std::in_place};
    std::vector<int> noted;
};

TEST_F(EventLoopQueueTest, RunsWorkInTheOrderItWasPosted) {
    std::vector<int> expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    for (const int number : expected) {
        queue->post(note(number));
    }
    EXPECT_THAT(noted, IsEmpty());
    EXPECT_TRUE(runPosted());
    EXPECT_THAT(noted, ElementsAreArray(expected));
}

TEST_F(EventLoopQueueTest, RunsOnItsOwnThreadWhatOthersPost) {
    std::thread::id ranOn;
    std::thread other([&] { queue->post([&] { ranOn = std::this_thread::get_id(); }); });
    EXPECT_TRUE(EventLoop::runUntil([&] { return ranOn != std::thread::id(); }));
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    other.join();
}

TEST_F(EventLoopQueueTest, KeepsTheOrderOfEachOfSeveralThreads) {
    NumberingThreads threads(*queue);
    EXPECT_TRUE(EventLoop::runUntil([&] { return threads.isAllNoted(); }));
    threads.join();
    threads.expectOrder();
}

TEST_F(EventLoopQueueTest, RunsWhatWorkPostsAfterWhatWaits) {
    queue->post([this] {
        queue->post(note(3));
        noted.push_back(1);
    });
    queue->post(note(2));
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() == 3; }));
    EXPECT_THAT(noted, ElementsAre(1, 2, 3));
}

TEST_F(EventLoopQueueTest, LeavesRoomForOtherEventsHoweverMuchIsPosted) {
    Work postAgain;
    bool ended = false;
    postAgain = [&] {
        if (!ended) {
            queue->post(postAgain);
        }
    };
    postAgain();
    queue->after(soon, [&] { ended = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return ended; }));
    EXPECT_TRUE(runPosted());
}

TEST_F(EventLoopQueueTest, RunsWhatWaitsInAnEventLoopThatWorkRuns) {
    QEventLoop inner;
    queue->post([&] {
        noted.push_back(1);
        inner.exec();
        noted.push_back(4);
    });
    queue->post(note(2));
    queue->post([&] {
        noted.push_back(3);
        inner.quit();
    });
    queue->post(note(5));
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() == 5; }));
    EXPECT_THAT(noted, ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(EventLoopQueueTest, LetsGoOfWhatWorkHoldsBeforeTheNext) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool gone = false;
    queue->post([held = std::move(held)] { EXPECT_NE(held, nullptr); });
    queue->post([&] { gone = watched.expired(); });
    EXPECT_TRUE(runPosted());
    EXPECT_TRUE(gone);
}

TEST_F(EventLoopQueueTest, DropsWhatWaitsWhenItIsDestroyed) {
    std::thread::id endedOn;
    auto end = std::make_shared<AtEnd>([&] { endedOn = std::this_thread::get_id(); });
    queue->post([this, end = std::move(end)] { noted.push_back(1); });
    EXPECT_EQ(endedOn, std::thread::id());
    queue.reset();
    EXPECT_EQ(endedOn, std::this_thread::get_id());
    EventLoop::runReady();
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(EventLoopQueueTest, DropsAlsoWhatIsPostedByWhatItDrops) {
    const auto last = std::make_shared<int>();
    EventLoopQueue& posting = *queue;
    auto end = std::make_shared<AtEnd>(
        [&posting, last] { posting.post([last] { FAIL() << "was dropped"; }); });
    queue->post([end] {});
    auto timed = std::make_shared<AtEnd>(
        [&posting, last] { posting.post([last] { FAIL() << "was dropped"; }); });
    queue->after(never, [timed] {});
    end.reset();
    timed.reset();
    queue.reset();
    EXPECT_EQ(last.use_count(), 1);
}

TEST_F(EventLoopQueueTest, GivesItsDescriptorBack) {
    const auto openDescriptors = [] {
        const std::filesystem::directory_iterator entries("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    };
    const auto with = openDescriptors();
    queue.reset();
    EXPECT_EQ(openDescriptors(), with - 1);
}

TEST_F(EventLoopQueueTest, CannotBeMadeWithoutADescriptor) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors itself to look at what is thrown";
#endif
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    EXPECT_THROW(EventLoopQueue(), std::system_error);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST_F(EventLoopQueueTest, RunsDelayedWorkOnce) {
    queue->after(soon, note(1));
    EXPECT_THAT(noted, IsEmpty());
    EXPECT_TRUE(EventLoop::runUntil([&] { return !noted.empty(); }));
    bool later = false;
    queue->after(10 * soon, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later; }));
    EXPECT_THAT(noted, SizeIs(1));
}

TEST_F(EventLoopQueueTest, RunsDelayedWorkNotBeforeItReturns) {
    queue->after(0, note(1));
    EXPECT_THAT(noted, IsEmpty());
    EXPECT_TRUE(EventLoop::runUntil([&] { return !noted.empty(); }));
}

TEST_F(EventLoopQueueTest, RunsDelayedWorkInTheOrderOfItsTimes) {
    queue->after(0.03, note(3));
    queue->after(0.01, note(1));
    queue->after(0.02, note(2));
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() == 3; }));
    EXPECT_THAT(noted, ElementsAre(1, 2, 3));
}

TEST_F(EventLoopQueueTest, LetsGoOfWhatDelayedWorkHoldsOnceItRan) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool goneAtNext = false;
    queue->after(soon, [this, held = std::move(held), &watched, &goneAtNext] {
        EXPECT_NE(held, nullptr);
        queue->post([&] { goneAtNext = watched.expired(); });
        noted.push_back(1);
    });
    EXPECT_TRUE(EventLoop::runUntil([&] { return !noted.empty(); }));
    EXPECT_TRUE(runPosted());
    EXPECT_TRUE(goneAtNext);
}

TEST_F(EventLoopQueueTest, DoesNotRunCancelledWork) {
    const auto held = std::make_shared<int>();
    const auto once = queue->after(soon, [this, held] { noted.push_back(1); });
    const auto often = queue->every(soon, [this, held] { noted.push_back(2); });
    once->cancel();
    often->cancel();
    often->cancel();
    bool later = false;
    queue->after(10 * soon, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later && held.use_count() == 1; }));
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(EventLoopQueueTest, DoesNotRunWorkThatIsCancelledWhenItIsDue) {
    std::vector<std::shared_ptr<ScheduledWork>> both(2);
    // Both are due in the same turn of the loop; whichever comes first cancels the other.
    for (const int number : {0, 1}) {
        both[static_cast<std::size_t>(number)] = queue->after(soon, [this, &both, number] {
            both[static_cast<std::size_t>(1 - number)]->cancel();
            noted.push_back(number);
        });
    }
    bool later = false;
    queue->after(10 * soon, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later; }));
    EXPECT_THAT(noted, SizeIs(1));
}

TEST_F(EventLoopQueueTest, MayBeAskedToCancelWhatHasRun) {
    const auto work = queue->after(soon, note(1));
    EXPECT_TRUE(EventLoop::runUntil([&] { return !noted.empty(); }));
    work->cancel();
    EXPECT_TRUE(runPosted());
    work->cancel();
    EXPECT_THAT(noted, SizeIs(1));
}

TEST_F(EventLoopQueueTest, MayBeAskedToCancelWhatRuns) {
    const auto held = std::make_shared<int>();
    std::shared_ptr<ScheduledWork> once;
    std::shared_ptr<ScheduledWork> often;
    once = queue->after(soon, [this, &once, held] {
        once->cancel();
        noted.push_back(*held);
    });
    often = queue->every(soon, [this, &often, held] {
        often->cancel();
        noted.push_back(*held);
    });
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() == 2 && held.use_count() == 1; }));
    bool later = false;
    queue->after(10 * soon, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later; }));
    EXPECT_THAT(noted, SizeIs(2));
}

TEST_F(EventLoopQueueTest, MayBeAskedToCancelWhatWentWithIt) {
    const auto once = queue->after(never, note(1));
    const auto often = queue->every(never, note(2));
    queue.reset();
    once->cancel();
    often->cancel();
    EventLoop::runReady();
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(EventLoopQueueTest, RepeatsWorkUntilItIsCancelled) {
    const auto work = queue->every(soon, note(1));
    EXPECT_THAT(noted, IsEmpty());
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() >= 5; }));
    work->cancel();
    const std::size_t count = noted.size();
    bool later = false;
    queue->after(10 * soon, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later; }));
    EXPECT_THAT(noted, SizeIs(count));
}

TEST_F(EventLoopQueueTest, GoesOnWithWorkThatIsLetGo) {
    queue->every(soon, note(1));
    EXPECT_TRUE(EventLoop::runUntil([&] { return noted.size() >= 5; }));
}

TEST_F(EventLoopQueueTest, ForgetsScheduledWorkWhenItIsDestroyed) {
    const auto held = std::make_shared<int>();
    queue->after(soon, [this, held] { noted.push_back(1); });
    queue->every(soon, [this, held] { noted.push_back(2); });
    EXPECT_EQ(held.use_count(), 3);
    queue.reset();
    EXPECT_EQ(held.use_count(), 1);
    bool later = false;
    QTimer::singleShot(10, [&] { later = true; });
    EXPECT_TRUE(EventLoop::runUntil([&] { return later; }));
    EXPECT_THAT(noted, IsEmpty());
}

} // namespace
} // namespace sallowmere
