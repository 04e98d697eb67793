// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/ProcessTable.h"
#include "Platform/WorkQueue.h"
#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Sessions/SessionScanner.h"
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Usage/OfficialUsage.h"
#include "Sallowmere/Usage/UsageAPI.h"
#include "Sallowmere/Usage/UsageCalculator.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace sallowmere {

/// What the engine reads the world with. The references must outlive the engine and whatever is
/// posted to the queues.
struct RefreshServices {
    /// Asks for the official figures, as `UsageAPI::fetch` does. Called on the work queue, which it
    /// holds up until it returns; its completion may come on any thread.
    using OfficialFetch = std::function<void(double timeout, UsageAPI::Completion completion)>;

    Clock clock;
    MainQueue& mainQueue;
    /// Where all scanning and computing is done, one job at a time.
    WorkQueue& workQueue;
    const FileSystem& files;
    const ProcessTable& processes;
    std::string home;
    OfficialFetch fetchOfficialUsage;
};

/// Keeps the model current: scans sessions every 2 s, computes usage every 20 s and asks for the
/// official figures every 60 s. No job overlaps itself: a turn that comes while the job is still
/// under way is skipped. The work queue carries the jobs and alone protects what they keep from one
/// turn to the next; results are handed over on the main thread.
class RefreshEngine : public std::enable_shared_from_this<RefreshEngine> {
public:
    /// Seconds between turns, and how long the service may take.
    static constexpr double sessionInterval = 2.0;
    static constexpr double usageInterval = 20.0;
    static constexpr double officialInterval = 60.0;
    static constexpr double officialTimeout = 8.0;

    /// The engine for a model, which it does not keep alive. Whoever lets go of the engine last,
    /// it is destroyed on the main thread.
    static std::shared_ptr<RefreshEngine> create(AppState& state, RefreshServices services);

    /// Runs every job once and from then on by the clock. Once, on the main thread.
    void start();

private:
    RefreshEngine(AppState& state, RefreshServices services);

    void refreshSessions();
    void refreshUsage();
    void refreshOfficialUsage();

    /// On the work queue.
    void scanSessions();
    void computeUsage();
    void fetchOfficialUsage();
    void keepOfficialUsage(const std::optional<OfficialUsage>& official);

    std::shared_ptr<ScheduledWork> every(double seconds, void (RefreshEngine::*job)());
    /// Runs a job on the work queue, if the engine is still there by then.
    void enqueue(void (RefreshEngine::*job)());

    const RefreshServices services_;
    SessionScanner scanner_;
    UsageCalculator usageCalculator_;
    const Settings settings_;
    /// Asked on the main thread only.
    const QPointer<AppState> state_;
    std::shared_ptr<ScheduledWork> sessionTimer_;
    std::shared_ptr<ScheduledWork> usageTimer_;
    std::shared_ptr<ScheduledWork> officialTimer_;
    /// Main thread: a job is queued or running.
    bool sessionScanInFlight_ = false;
    bool usageScanInFlight_ = false;
    /// Work queue: a request is under way, and the last figures that came.
    bool officialFetchInFlight_ = false;
    std::optional<OfficialUsage> officialUsage_;
};

} // namespace sallowmere
