// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/SampleTimeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace sallowmere {
namespace {

Timestamp second(int count) {
    return Timestamp(std::chrono::seconds(1'780'000'000 + count));
}

/// File states and the timeline that is told of all that happens to them.
class Timeline {
public:
    FileStates states;
    SampleTimeline timeline;

    /// False when the file already has the message.
    bool append(const std::string& path, const std::string& id, Timestamp time, double weighted) {
        FileState& state = states.try_emplace(path, time).first->second;
        const auto ownId = state.seenIds.insert(id);
        if (ownId) {
            state.samples.push_back({*ownId, time, weighted, state.intern("opus")});
            timeline.add(state.samples.back());
        }
        return ownId.has_value();
    }

    void drop(const std::string& path) {
        timeline.invalidate();
        states.erase(path);
    }

    std::vector<double> weights(Timestamp horizon) {
        std::vector<double> result;
        for (const Sample& sample : timeline.samples(states, horizon)) {
            result.push_back(sample.weighted);
        }
        return result;
    }
};

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SampleTimeline, IsEmptyWithoutSamples) {
    Timeline files;
    EXPECT_THAT(files.weights(second(0)), IsEmpty());
}

TEST(SampleTimeline, ListsSamplesByTime) {
    Timeline files;
    files.append("a", "x", second(30), 3);
    files.append("b", "y", second(10), 1);
    files.append("a", "z", second(20), 2);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1, 2, 3));
}

TEST(SampleTimeline, PutsLaterArrivalsWhereTheirTimeBelongs) {
    Timeline files;
    files.append("a", "x", second(30), 3);
    files.append("a", "y", second(10), 1);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1, 3));
    files.append("b", "z", second(20), 2);
    files.append("a", "w", second(40), 4);
    files.append("b", "v", second(5), 0);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(0, 1, 2, 3, 4));
}

TEST(SampleTimeline, KeepsTheOrderOfEqualTimes) {
    Timeline files;
    files.append("b", "u", second(10), 3);
    files.append("a", "v", second(10), 1);
    files.append("a", "w", second(10), 2);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1, 2, 3)) << "file by file, line by line";
    files.append("a", "x", second(10), 4);
    files.append("a", "y", second(10), 5);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1, 2, 3, 4, 5)) << "then as they arrive";
}

TEST(SampleTimeline, LeavesOutWhatIsNotLaterThanTheHorizon) {
    Timeline files;
    files.append("a", "x", second(10), 1);
    files.append("a", "y", second(11), 2);
    EXPECT_THAT(files.weights(second(9)), ElementsAre(1, 2));
    EXPECT_THAT(files.weights(second(10)), ElementsAre(2));
    EXPECT_THAT(files.weights(second(11)), IsEmpty());
    EXPECT_THAT(files.weights(second(9)), ElementsAre(1, 2)) << "when the horizon moves back";
}

TEST(SampleTimeline, LeavesOutArrivalsThatAreNotLaterThanTheHorizon) {
    Timeline files;
    EXPECT_THAT(files.weights(second(0)), IsEmpty());
    files.append("a", "x", second(10), 1);
    files.append("b", "x", second(12), 2);
    EXPECT_THAT(files.weights(second(10)), ElementsAre(2));
}

TEST(SampleTimeline, ListsAMessageOnceByItsFirstCopy) {
    Timeline files;
    files.append("a", "x", second(10), 1);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
    files.append("b", "x", second(10), 2);
    files.append("c", "x", second(5), 3);
    files.append("d", "x", second(20), 4);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
}

TEST(SampleTimeline, FallsBackOnALaterCopyOnceTheFirstIsTooOld) {
    Timeline files;
    files.append("a", "x", second(10), 1);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
    files.append("b", "x", second(20), 2);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
    EXPECT_THAT(files.weights(second(10)), ElementsAre(2));
    EXPECT_THAT(files.weights(second(20)), IsEmpty());
}

TEST(SampleTimeline, FallsBackOnAnotherCopyWhenAFileIsDropped) {
    Timeline files;
    files.append("a", "x", second(10), 1);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
    files.append("b", "x", second(10), 2);
    EXPECT_THAT(files.weights(second(0)), ElementsAre(1));
    files.drop("a");
    EXPECT_THAT(files.weights(second(0)), ElementsAre(2));
}

/// Random doings, after each of which the list must be what the files say.
class RandomTimelineTest : public testing::TestWithParam<unsigned> {
protected:
    int random(int least, int most) { return std::uniform_int_distribution(least, most)(engine_); }

    void doSomething() {
        const std::string path(1, static_cast<char>('a' + random(0, 4)));
        const int choice = random(0, 99);
        if (choice < 70) {
            // Around the horizon, also behind it; few different times, so that many are equal.
            files_.append(path, std::to_string(random(0, 60)), second(horizon_ + random(-5, 20)),
                          ++lastWeight_);
        } else if (choice < 76) {
            files_.drop(path);
        } else if (choice < 96) {
            horizon_ += random(0, 4);
        } else {
            horizon_ -= random(0, 15);
        }
    }

    void expectListToHold() {
        const Timestamp horizon = second(horizon_);
        const auto list = files_.timeline.samples(files_.states, horizon);
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end(), [](const Sample& a, const Sample& b) {
            return a.time < b.time;
        }));
        std::set<std::string> listed;
        for (const Sample& sample : list) {
            EXPECT_GT(sample.time, horizon);
            EXPECT_TRUE(listed.insert(std::string(sample.messageId)).second) << sample.messageId;
            EXPECT_TRUE(exists(sample)) << sample.messageId;
        }
        EXPECT_EQ(listed, idsLaterThan(horizon));
    }

private:
    bool exists(const Sample& sample) const {
        // Every sample ever made has another weight.
        return std::any_of(files_.states.begin(), files_.states.end(), [&](const auto& entry) {
            const auto& samples = entry.second.samples;
            return std::any_of(samples.begin(), samples.end(), [&](const Sample& copy) {
                return copy.weighted == sample.weighted && copy.time == sample.time
                       && copy.messageId == sample.messageId && copy.model == sample.model;
            });
        });
    }

    std::set<std::string> idsLaterThan(Timestamp horizon) const {
        std::set<std::string> ids;
        for (const auto& [path, state] : files_.states) {
            for (const Sample& sample : state.samples) {
                if (sample.time > horizon) {
                    ids.emplace(sample.messageId);
                }
            }
        }
        return ids;
    }

    std::mt19937 engine_{GetParam()};
    Timeline files_;
    int horizon_ = 0;
    double lastWeight_ = 0;
};

TEST_P(RandomTimelineTest, AfterEveryStepTheListHoldsEachMessageOnceInOrder) {
    for (int step = 0; step < 400; ++step) {
        for (int count = random(1, 4); count > 0; --count) {
            doSomething();
        }
        expectListToHold();
        ASSERT_FALSE(HasFailure()) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTimelineTest, testing::Range(1U, 21U));

} // namespace
} // namespace sallowmere
