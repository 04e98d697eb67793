// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WorkQueue.h"

#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <memory>
#include <mutex>

namespace sallowmere {

/// The queue of a thread that runs a Qt event loop: the thread that makes the object, which also
/// destroys it, both while there is an application object. Work scheduled with it dies with it.
/// The loop's other events come between any two pieces of work, and work that runs an event loop of
/// its own leaves the next pieces to that.
class EventLoopQueue : public MainQueue {
public:
    /// Throws `std::system_error` when the system has no file descriptor left.
    EventLoopQueue();
    ~EventLoopQueue() override;

    void post(Work work) override;
    std::shared_ptr<ScheduledWork> after(double seconds, Work work) override;
    std::shared_ptr<ScheduledWork> every(double seconds, Work work) override;

private:
    enum class Turns { one, many };

    std::shared_ptr<ScheduledWork> schedule(double seconds, Turns turns, Work work);
    void runNext();
    std::deque<Work> takeAll();

    std::mutex lock_;
    std::deque<Work> waiting_;
    /// Counts what waits, and is readable while there is anything. A descriptor rather than a
    /// posted event, because race detectors see how it orders the threads.
    int count_;
    QSocketNotifier someWait_;
    /// Parent of the timers.
    std::unique_ptr<QObject> timers_ = std::make_unique<QObject>();
};

} // namespace sallowmere
