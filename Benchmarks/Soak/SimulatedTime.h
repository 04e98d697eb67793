// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/WorkQueue.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <utility>

namespace sallowmere {

/// A clock that is told to go on, and what waits for it: a main queue and a work queue on the one
/// thread there is. Keeps nothing of what has run or was cancelled longer than until its time.
class SimulatedTime {
public:
    explicit SimulatedTime(Timestamp start) : now_(start) {}
    SimulatedTime(const SimulatedTime&) = delete;
    SimulatedTime& operator=(const SimulatedTime&) = delete;

    MainQueue& main() { return main_; }
    WorkQueue& work() { return work_; }
    Clock clock() const {
        return [this] { return now_; };
    }
    Timestamp now() const { return now_; }

    /// Lets time pass, running what falls due in the order of its time.
    void pass(double seconds);
    /// Turns the clock alone, as a suspended machine or a user does: what waits goes on waiting for
    /// as long as it had to.
    void turnClock(double seconds) { now_ = advancedBy(now_, seconds); }

    /// How many pieces of work wait for their time.
    std::size_t waiting() const { return timed_.size(); }

private:
    class Timed;

    class Posted : public WorkQueue {
    public:
        void post(Work work) override { waiting_.push_back(std::move(work)); }
        /// Whether there was any.
        bool runAll();

    private:
        std::deque<Work> waiting_;
    };

    class Main : public MainQueue {
    public:
        explicit Main(SimulatedTime& time) : time_(time) {}
        void post(Work work) override { time_.posted_.post(std::move(work)); }
        std::shared_ptr<ScheduledWork> after(double seconds, Work work) override;
        std::shared_ptr<ScheduledWork> every(double seconds, Work work) override;

    private:
        SimulatedTime& time_;
    };

    std::shared_ptr<ScheduledWork> schedule(double seconds, double interval, Work work);
    void runPosted();
    /// Microseconds since the beginning.
    void moveTo(std::int64_t moment);

    Timestamp now_;
    std::int64_t elapsed_ = 0;
    Posted posted_;
    Posted work_;
    Main main_{*this};
    /// By the microsecond at which it is due.
    std::multimap<std::int64_t, std::shared_ptr<Timed>> timed_;
};

} // namespace sallowmere
