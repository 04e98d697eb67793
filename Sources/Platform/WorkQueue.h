// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace sallowmere {

using Work = std::function<void()>;

/// Runs pieces of work one at a time, in the order they were posted, on one thread. Work must not
/// throw.
class WorkQueue {
public:
    WorkQueue() = default;
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;
    virtual ~WorkQueue() = default;

    /// Returns at once. Any thread. Work that has not begun when the queue is destroyed is dropped.
    virtual void post(Work work) = 0;
};

/// Work that waits for its time. Letting go of it does not cancel it.
class ScheduledWork {
public:
    ScheduledWork() = default;
    ScheduledWork(const ScheduledWork&) = delete;
    ScheduledWork& operator=(const ScheduledWork&) = delete;
    virtual ~ScheduledWork() = default;

    /// It does not run (again); no effect when it has run. On the queue's thread.
    virtual void cancel() = 0;
};

/// The queue of the thread that the model and the views live on, which also runs work later.
class MainQueue : public WorkQueue {
public:
    /// Runs `work` once, `seconds` from now. On the queue's thread.
    virtual std::shared_ptr<ScheduledWork> after(double seconds, Work work) = 0;

    /// Runs `work` every `seconds`, the first time `seconds` from now. Turns that the thread was
    /// too busy for are not made up. On the queue's thread.
    virtual std::shared_ptr<ScheduledWork> every(double seconds, Work work) = 0;
};

} // namespace sallowmere
