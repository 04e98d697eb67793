// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "MeasuredEngine.h"

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Linux/LinuxWorkQueue.h"
#include "Platform/Qt/EventLoopQueue.h"
#include "Sallowmere/Application/RefreshEngine.h"

#include <chrono>
#include <ctime>
#include <mutex>
#include <utility>

namespace sallowmere {

namespace {

double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

template <typename Action>
Cost costOf(Action action) {
    const auto start = std::chrono::steady_clock::now();
    const double cpuBefore = threadMilliseconds();
    action();
    const double cpu = threadMilliseconds() - cpuBefore;
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), cpu};
}

/// What both threads note their costs in.
class Ledger {
public:
    void add(std::vector<Cost> EngineCosts::*list, Cost cost) {
        const std::lock_guard locked(lock_);
        (costs_.*list).push_back(cost);
    }

    EngineCosts take() {
        const std::lock_guard locked(lock_);
        return std::exchange(costs_, {});
    }

private:
    std::mutex lock_;
    EngineCosts costs_;
};

class TimedMainQueue : public MainQueue {
public:
    explicit TimedMainQueue(Ledger& ledger) : ledger_(ledger) {}

    void post(Work work) override {
        queue_.post([this, work = std::move(work)]() mutable {
            // With what the work holds, which may be a whole list of sessions.
            note(costOf([&work] { std::exchange(work, nullptr)(); }));
        });
    }
    std::shared_ptr<ScheduledWork> after(double seconds, Work work) override {
        return queue_.after(seconds, [this, work = std::move(work)] { note(costOf(work)); });
    }
    std::shared_ptr<ScheduledWork> every(double seconds, Work work) override {
        return queue_.every(seconds, [this, work = std::move(work)] { note(costOf(work)); });
    }

private:
    void note(Cost cost) { ledger_.add(&EngineCosts::mainThread, cost); }

    EventLoopQueue queue_;
    Ledger& ledger_;
};

class TimedProcesses : public ProcessTable {
public:
    explicit TimedProcesses(Ledger& ledger) : ledger_(ledger) {}

    std::string listing() const override {
        std::string text;
        ledger_.add(&EngineCosts::listings, costOf([&] { text = processes_.listing(); }));
        ++listings_;
        return text;
    }
    std::optional<std::string> workingDirectory(std::int32_t pid) const override {
        return processes_.workingDirectory(pid);
    }
    std::uint32_t userId() const override { return processes_.userId(); }
    std::span<const TerminalRule> terminals() const override { return processes_.terminals(); }

    /// How often the processes were listed. Work queue's thread.
    int listings() const { return listings_; }

private:
    const LinuxProcessTable processes_;
    Ledger& ledger_;
    mutable int listings_ = 0;
};

class TimedWorkQueue : public WorkQueue {
public:
    TimedWorkQueue(Ledger& ledger, const TimedProcesses& processes)
        : ledger_(ledger), processes_(processes) {}

    void post(Work work) override {
        queue_.post([this, work = std::move(work)] {
            const int before = processes_.listings();
            const Cost cost = costOf(work);
            // A session scan is the work that lists the processes.
            if (processes_.listings() != before) {
                ledger_.add(&EngineCosts::scans, cost);
            }
        });
    }

private:
    Ledger& ledger_;
    const TimedProcesses& processes_;
    /// Last, so that its work ends before what it uses.
    LinuxWorkQueue queue_{"sallowmere-work"};
};

class NoApplications : public Applications {
public:
    std::optional<RunningApplication> ofProcess(std::int32_t) override { return std::nullopt; }
    std::optional<RunningApplication> withIdentifier(std::string_view) override {
        return std::nullopt;
    }
    void activate(RunningApplication) override {}
    std::vector<ApplicationWindow> windows(RunningApplication) override { return {}; }
    void raise(const ApplicationWindow&) override {}
    bool hasKeyboard(RunningApplication) override { return false; }
};

class NoKeystrokes : public Keystrokes {
public:
    bool isTrusted() override { return false; }
    void requestTrust() override {}
    void typeDigit(int) override {}
};

class NoSounds : public SystemSounds {
public:
    void play(std::string_view, float) override {}
};

Settings settingsFor(const std::string& home, int maxSessions) {
    Settings settings = Settings::defaults(home);
    settings.maxSessions = maxSessions;
    return settings;
}

} // namespace

struct MeasuredEngine::Parts {
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;
    Parts(const std::string& home, int maxSessions)
        : state(settingsFor(home, maxSessions),
                {linuxClock(), mainQueue, files, home, applications, keystrokes,
                 [](const std::string&) {}, soundPlayer,
                 [](const auto&, const auto&, const auto&, const auto&) {}}),
          engine(RefreshEngine::create(
              state, {linuxClock(), mainQueue, workQueue, files, processes, home,
                      [](double, const UsageAPI::Completion& done) { done(std::nullopt); }})) {}

    Ledger ledger;
    LinuxFileSystem files;
    TimedProcesses processes{ledger};
    NoApplications applications;
    NoKeystrokes keystrokes;
    NoSounds sounds;
    SoundPlayer soundPlayer{sounds, linuxClock()};
    TimedMainQueue mainQueue{ledger};
    TimedWorkQueue workQueue{ledger, processes};
    AppState state;
    std::shared_ptr<RefreshEngine> engine;
};

MeasuredEngine::MeasuredEngine(const std::string& home, int maxSessions)
    : parts_(std::make_unique<Parts>(home, maxSessions)) {}

MeasuredEngine::~MeasuredEngine() = default;

AppState& MeasuredEngine::state() {
    return parts_->state;
}

void MeasuredEngine::start(std::function<void()> onScan) {
    // The last property that a scan sets; a moment later the sessions are those of the scan.
    QObject::connect(
        &parts_->state, &AppState::permissionRequestsWillChange, &parts_->state,
        [onScan = std::move(onScan)] { onScan(); }, Qt::QueuedConnection);
    parts_->engine->start();
}

EngineCosts MeasuredEngine::takeCosts() {
    return parts_->ledger.take();
}

} // namespace sallowmere
