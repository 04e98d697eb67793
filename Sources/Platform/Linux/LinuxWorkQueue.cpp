// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxWorkQueue.h"

#include <utility>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// Of 19 steps from the default to the lowest priority, where the system stops.
constexpr int stepsDown = 10;
constexpr std::size_t longestThreadName = 15;

} // namespace

LinuxWorkQueue::LinuxWorkQueue(const std::string& label) : thread_([this, label] { run(label); }) {}

LinuxWorkQueue::~LinuxWorkQueue() {
    stop();
}

void LinuxWorkQueue::post(Work work) {
    {
        const std::lock_guard locked(lock_);
        if (ending_) {
            return;
        }
        waiting_.push_back(std::move(work));
    }
    changed_.notify_one();
}

void LinuxWorkQueue::stop() {
    {
        const std::lock_guard locked(lock_);
        ending_ = true;
    }
    changed_.notify_one();
    if (thread_.joinable()) {
        thread_.join();
    }
    // Not under the lock: what goes with the work may still post.
    std::deque<Work> dropped;
    {
        const std::lock_guard locked(lock_);
        dropped.swap(waiting_);
    }
}

void LinuxWorkQueue::run(const std::string& label) {
    pthread_setname_np(pthread_self(), label.substr(0, longestThreadName).c_str());
    // On Linux a thread has a nice value of its own.
    const auto self = static_cast<id_t>(gettid());
    setpriority(PRIO_PROCESS, self, getpriority(PRIO_PROCESS, self) + stepsDown);
    std::unique_lock locked(lock_);
    while (true) {
        changed_.wait(locked, [this] { return ending_ || !waiting_.empty(); });
        if (ending_) {
            return;
        }
        Work work = std::move(waiting_.front());
        waiting_.pop_front();
        locked.unlock();
        work();
        // What the work holds goes before the next one begins, and not under the lock.
        work = nullptr;
        locked.lock();
    }
}

} // namespace sallowmere
