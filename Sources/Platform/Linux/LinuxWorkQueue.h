// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WorkQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace sallowmere {

/// A thread of its own that gives way to the rest of the system: it, and every program it starts,
/// has a lower priority. It sleeps while there is nothing to do.
class LinuxWorkQueue : public WorkQueue {
public:
    /// `label` names the thread for debuggers and system monitors, which show its first 15 bytes.
    explicit LinuxWorkQueue(const std::string& label);
    ~LinuxWorkQueue() override;

    void post(Work work) override;

    /// Waits for the work that has begun. What waits then is dropped, and so is what is posted from
    /// then on: whoever still posts may end later than the thread. Not called by the queue's own
    /// work; the destructor does the same.
    void stop();

private:
    void run(const std::string& label);

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Work> waiting_;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace sallowmere
