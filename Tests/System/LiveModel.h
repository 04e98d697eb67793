// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Linux/LinuxWorkQueue.h"
#include "Platform/Qt/EventLoopQueue.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "Support/FakeDesktop.h"
#include "System/EventLoop.h"

#include <memory>
#include <optional>
#include <string>

namespace sallowmere {

/// The model of a home directory, kept current by the engine with real queues, files, processes and
/// time. What it would do to the desktop is only noted, and of the service there is a stand-in.
class LiveModel {
public:
    explicit LiveModel(const std::string& home, const std::string& ps = "/bin/ps",
                       double patience = LinuxProcessTable::longestRun);
    LiveModel(const LiveModel&) = delete;
    LiveModel& operator=(const LiveModel&) = delete;
    ~LiveModel();

    AppState& state() { return *state_; }
    FakeSounds& sounds() { return sounds_; }

    /// The session with that title; null when it is not listed.
    const SessionInfo* session(const QString& title) const;

private:
    // In the order in which they can do without each other: the model and the service's thread end
    // before the queues that they post to.
    EventLoop loop_;
    LinuxWorkQueue workQueue_{"sallowmere.refresh"};
    EventLoopQueue mainQueue_;
    LinuxFileSystem files_;
    LinuxProcessTable processes_;
    FakeApplications applications_;
    FakeKeystrokes keystrokes_;
    FakeSounds sounds_;
    SoundPlayer player_;
    /// Answers from a thread of its own, with half of the 5-hour allowance used.
    LinuxWorkQueue service_{"service"};
    std::unique_ptr<AppState> state_;
    std::shared_ptr<RefreshEngine> engine_;
};

} // namespace sallowmere
