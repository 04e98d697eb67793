// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/SimulatedTime.h"

#include <chrono>

namespace sallowmere {

namespace {

std::int64_t microseconds(double seconds) {
    return static_cast<std::int64_t>(seconds * 1e6);
}

} // namespace

class SimulatedTime::Timed : public ScheduledWork {
public:
    Timed(std::int64_t interval, Work work) : interval_(interval), work_(std::move(work)) {}

    void cancel() override { work_ = nullptr; }
    bool isCancelled() const { return !work_; }
    std::int64_t interval() const { return interval_; }
    /// From a copy, because running may cancel it.
    void run() const {
        const Work work = work_;
        work();
    }

private:
    std::int64_t interval_;
    Work work_;
};

bool SimulatedTime::Posted::runAll() {
    bool wasAny = false;
    while (!waiting_.empty()) {
        const Work work = std::move(waiting_.front());
        waiting_.pop_front();
        work();
        wasAny = true;
    }
    return wasAny;
}

std::shared_ptr<ScheduledWork> SimulatedTime::Main::after(double seconds, Work work) {
    return time_.schedule(seconds, 0, std::move(work));
}

std::shared_ptr<ScheduledWork> SimulatedTime::Main::every(double seconds, Work work) {
    return time_.schedule(seconds, seconds, std::move(work));
}

std::shared_ptr<ScheduledWork> SimulatedTime::schedule(double seconds, double interval, Work work) {
    auto timed = std::make_shared<Timed>(microseconds(interval), std::move(work));
    timed_.emplace(elapsed_ + microseconds(seconds), timed);
    return timed;
}

void SimulatedTime::pass(double seconds) {
    const std::int64_t end = elapsed_ + microseconds(seconds);
    runPosted();
    while (!timed_.empty() && timed_.begin()->first <= end) {
        const auto [due, next] = *timed_.begin();
        timed_.erase(timed_.begin());
        moveTo(due);
        if (next->isCancelled()) {
            continue;
        }
        if (next->interval() > 0) {
            timed_.emplace(due + next->interval(), next);
        }
        next->run();
        runPosted();
    }
    moveTo(end);
}

void SimulatedTime::runPosted() {
    while (posted_.runAll() || work_.runAll()) {
    }
}

void SimulatedTime::moveTo(std::int64_t moment) {
    now_ += std::chrono::microseconds(moment - elapsed_);
    elapsed_ = moment;
}

} // namespace sallowmere
