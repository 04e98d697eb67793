// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Application/RefreshEngine.h"

#include "Sallowmere/Application/TerminalFilter.h"
#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Sallowmere/Processes/ProcessScanner.h"

#include <utility>
#include <vector>

namespace sallowmere {

std::shared_ptr<RefreshEngine> RefreshEngine::create(AppState& state, RefreshServices services) {
    MainQueue& mainQueue = services.mainQueue;
    // A job on the work queue may be the last to hold the engine, and its timers are the main
    // thread's. What is posted owns it, so that it ends even when nothing is run there any more.
    return {new RefreshEngine(state, std::move(services)), [&mainQueue](RefreshEngine* engine) {
                mainQueue.post([last = std::shared_ptr<RefreshEngine>(engine)] {});
            }};
}

RefreshEngine::RefreshEngine(AppState& state, RefreshServices services)
    : services_(std::move(services)), scanner_(services_.files), usageCalculator_(services_.files),
      settings_(state.settings()), state_(&state) {}

void RefreshEngine::start() {
    refreshSessions();
    refreshOfficialUsage();
    refreshUsage();
    sessionTimer_ = every(sessionInterval, &RefreshEngine::refreshSessions);
    usageTimer_ = every(usageInterval, &RefreshEngine::refreshUsage);
    officialTimer_ = every(officialInterval, &RefreshEngine::refreshOfficialUsage);
}

std::shared_ptr<ScheduledWork> RefreshEngine::every(double seconds, void (RefreshEngine::*job)()) {
    return services_.mainQueue.every(seconds, [weak = weak_from_this(), job] {
        if (const auto engine = weak.lock()) {
            (engine.get()->*job)();
        }
    });
}

void RefreshEngine::enqueue(void (RefreshEngine::*job)()) {
    services_.workQueue.post([weak = weak_from_this(), job] {
        if (const auto engine = weak.lock()) {
            (engine.get()->*job)();
        }
    });
}

void RefreshEngine::refreshSessions() {
    if (!std::exchange(sessionScanInFlight_, true)) {
        enqueue(&RefreshEngine::scanSessions);
    }
}

void RefreshEngine::refreshUsage() {
    if (!std::exchange(usageScanInFlight_, true)) {
        enqueue(&RefreshEngine::computeUsage);
    }
}

void RefreshEngine::refreshOfficialUsage() {
    if (settings_.usageAPIEnabled) {
        enqueue(&RefreshEngine::fetchOfficialUsage);
    }
}

void RefreshEngine::scanSessions() {
    const Timestamp now = services_.clock();
    std::vector<SessionInfo> sessions = scanner_.scan(settings_, now);
    const std::vector<ClaudeProcess> processes = ProcessScanner::scan(services_.processes);
    ProcessScanner::Matches matches = ProcessScanner::match(processes, sessions, now);
    ProcessScanner::attach(matches, sessions);
    TerminalFilter::keepWanted(sessions, settings_.terminals, now);
    TerminalFilter::keepWanted(matches.orphans, settings_.terminals);
    auto permissions = NotificationWatcher::pending(services_.files, services_.home, now);
    services_.mainQueue.post([engine = shared_from_this(), sessions = std::move(sessions),
                              orphans = std::move(matches.orphans),
                              permissions = std::move(permissions)]() mutable {
        if (engine->state_) {
            engine->state_->applyScan(std::move(sessions), std::move(orphans),
                                      std::move(permissions));
        }
        engine->sessionScanInFlight_ = false;
    });
}

void RefreshEngine::computeUsage() {
    const UsageSnapshot computed = usageCalculator_.compute(settings_, services_.clock());
    UsageSnapshot usage = computed.applying(officialUsage_, services_.clock());
    services_.mainQueue.post([engine = shared_from_this(), usage = std::move(usage)]() mutable {
        if (engine->state_) {
            engine->state_->setUsage(std::move(usage));
        }
        engine->usageScanInFlight_ = false;
    });
}

void RefreshEngine::fetchOfficialUsage() {
    if (std::exchange(officialFetchInFlight_, true)) {
        return;
    }
    const auto keep = [weak = weak_from_this()](std::optional<OfficialUsage> official) {
        if (const auto engine = weak.lock()) {
            engine->services_.workQueue.post([weak, official = std::move(official)] {
                if (const auto present = weak.lock()) {
                    present->keepOfficialUsage(official);
                }
            });
        }
    };
    services_.fetchOfficialUsage(officialTimeout, keep);
}

void RefreshEngine::keepOfficialUsage(const std::optional<OfficialUsage>& official) {
    if (official) {
        officialUsage_ = official;
    }
    officialFetchInFlight_ = false;
}

} // namespace sallowmere
