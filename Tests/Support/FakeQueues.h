// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/WorkQueue.h"

#include <deque>
#include <memory>
#include <vector>

namespace sallowmere {

/// A queue that runs its work when the test says so.
class FakeWorkQueue : public WorkQueue {
public:
    /// What goes with the work may post more, which goes too.
    ~FakeWorkQueue() override;

    void post(Work work) override { waiting_.push_back(std::move(work)); }

    std::size_t waiting() const { return waiting_.size(); }
    /// Runs the oldest piece of work; there must be one.
    void runOne();
    /// Runs all that waits, also what is posted meanwhile.
    void runAll();

private:
    std::deque<Work> waiting_;
};

/// A main thread whose time passes when the test says so.
class FakeMainQueue : public MainQueue {
public:
    explicit FakeMainQueue(Timestamp start) : now_(start) {}

    void post(Work work) override { posted_.post(std::move(work)); }
    std::shared_ptr<ScheduledWork> after(double seconds, Work work) override;
    std::shared_ptr<ScheduledWork> every(double seconds, Work work) override;

    /// Runs what was posted.
    void runPosted() { posted_.runAll(); }
    std::size_t posted() const { return posted_.waiting(); }

    /// Lets time pass, running what falls due in the order of its time, what was posted first.
    void advance(double seconds);
    /// Turns the clock without running anything or moving what is scheduled, as a user does.
    void setClock(Timestamp now);

    /// How many pieces of work wait for their time.
    std::size_t scheduled() const;
    Timestamp now() const { return now_; }
    Clock clock() const;

private:
    class Timed;

    std::shared_ptr<ScheduledWork> schedule(double seconds, double interval, Work work);
    std::shared_ptr<Timed> nextBefore(double end) const;

    FakeWorkQueue posted_;
    Timestamp now_;
    /// Seconds that passed since the queue was made.
    double elapsed_ = 0;
    std::vector<std::shared_ptr<Timed>> timed_;
};

} // namespace sallowmere
