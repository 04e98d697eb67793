// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WorkQueue.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>
#include <thread>
#include <vector>

namespace sallowmere {

/// Several threads at once that each have a queue note the numbers from 0 up. Without a lock: all
/// of it is noted by the queue's thread, on which alone it may be asked for until that is done.
class NumberingThreads {
public:
    explicit NumberingThreads(WorkQueue& queue) : noted_(threadCount) {
        threads_.reserve(threadCount);
        for (std::vector<int>& noted : noted_) {
            threads_.emplace_back([&] {
                for (int number = 0; number < workCount; ++number) {
                    queue.post([&noted, number] { noted.push_back(number); });
                }
            });
        }
    }

    void join() {
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }

    bool isAllNoted() const {
        return std::all_of(noted_.begin(), noted_.end(),
                           [](const std::vector<int>& noted) { return noted.size() == workCount; });
    }

    void expectOrder() const {
        std::vector<int> expected(workCount);
        std::iota(expected.begin(), expected.end(), 0);
        EXPECT_THAT(noted_, testing::Each(expected));
    }

private:
    static constexpr int threadCount = 4;
    static constexpr int workCount = 1'000;

    std::vector<std::vector<int>> noted_;
    std::vector<std::thread> threads_;
};

} // namespace sallowmere
