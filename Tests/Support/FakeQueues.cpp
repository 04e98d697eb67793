// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/FakeQueues.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace sallowmere {

FakeWorkQueue::~FakeWorkQueue() {
    while (!waiting_.empty()) {
        std::exchange(waiting_, {});
    }
}

void FakeWorkQueue::runOne() {
    if (waiting_.empty()) {
        throw std::logic_error("no work waits");
    }
    const Work work = std::move(waiting_.front());
    waiting_.pop_front();
    work();
}

void FakeWorkQueue::runAll() {
    while (!waiting_.empty()) {
        runOne();
    }
}

class FakeMainQueue::Timed : public ScheduledWork {
public:
    double due = 0;
    /// 0 for work that runs once.
    double interval = 0;
    Work work;
    bool cancelled = false;

    void cancel() override { cancelled = true; }
};

std::shared_ptr<ScheduledWork> FakeMainQueue::after(double seconds, Work work) {
    return schedule(seconds, 0, std::move(work));
}

std::shared_ptr<ScheduledWork> FakeMainQueue::every(double seconds, Work work) {
    return schedule(seconds, seconds, std::move(work));
}

std::shared_ptr<ScheduledWork> FakeMainQueue::schedule(double seconds, double interval, Work work) {
    const auto timed = std::make_shared<Timed>();
    timed->due = elapsed_ + seconds;
    timed->interval = interval;
    timed->work = std::move(work);
    timed_.push_back(timed);
    return timed;
}

void FakeMainQueue::advance(double seconds) {
    runPosted();
    const double end = elapsed_ + seconds;
    while (const std::shared_ptr<Timed> next = nextBefore(end)) {
        now_ = advancedBy(now_, next->due - elapsed_);
        elapsed_ = next->due;
        if (next->interval > 0) {
            next->due += next->interval;
        } else {
            std::erase(timed_, next);
        }
        next->work();
        runPosted();
    }
    now_ = advancedBy(now_, end - elapsed_);
    elapsed_ = end;
}

void FakeMainQueue::setClock(Timestamp now) {
    now_ = now;
}

std::shared_ptr<FakeMainQueue::Timed> FakeMainQueue::nextBefore(double end) const {
    std::shared_ptr<Timed> next;
    for (const std::shared_ptr<Timed>& candidate : timed_) {
        if (!candidate->cancelled && candidate->due <= end
            && (!next || candidate->due < next->due)) {
            next = candidate;
        }
    }
    return next;
}

std::size_t FakeMainQueue::scheduled() const {
    return static_cast<std::size_t>(std::count_if(
        timed_.begin(), timed_.end(), [](const auto& timed) { return !timed->cancelled; }));
}

Clock FakeMainQueue::clock() const {
    return [this] { return now_; };
}

} // namespace sallowmere
