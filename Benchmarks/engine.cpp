// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Runs the engine on a generated home directory, as the program does all day, and prints what it
// costs: engine-benchmark CASE SECONDS
//   resting   nothing changes
//   burst     between two scans twenty transcripts grow by a message each, over and over
//   follow    one transcript grows by fifty lines a second

#include "Corpus.h"
#include "LineWriter.h"
#include "MeasuredEngine.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "TemporaryDirectory.h"

#include <QCoreApplication>
#include <QHash>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace sallowmere {
namespace {

constexpr int transcripts = 300;
constexpr int sessions = 50;
constexpr int burstTranscripts = 20;
/// More than the end that a scan reads of each.
constexpr std::uint64_t transcriptBytes = 600'000;

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Processor time of this process or of its children that have ended.
double processorTime(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// What was used since the object was made, in milliseconds.
class Meter {
public:
    double own() const { return processorTime(RUSAGE_SELF) - own_; }
    double children() const { return processorTime(RUSAGE_CHILDREN) - children_; }
    double wall() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
            .count();
    }

private:
    double own_ = processorTime(RUSAGE_SELF);
    double children_ = processorTime(RUSAGE_CHILDREN);
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// A home directory with transcripts, of which the newest are listed and the others are too old.
class Home {
public:
    Home() {
        fs::create_directories(path() / ".config/sallowmere/notifications");
        corpus_.write(path() / ".claude/projects", transcripts, transcripts * transcriptBytes);
        for (const auto& entry : fs::recursive_directory_iterator(path() / ".claude/projects")) {
            if (entry.is_regular_file()) {
                transcripts_.push_back(entry.path());
            }
        }
        for (std::size_t i = 0; i < transcripts_.size(); ++i) {
            setAge(transcripts_[i], i < sessions ? minutes(3 + 10 * i) : minutes(900 + 20 * i));
        }
    }

    const fs::path& path() const { return directory_.path(); }

    /// Lets the `index`th of the listed transcripts, round and round, grow by a message.
    void grow(std::size_t index) {
        std::ofstream(transcripts_[index % sessions], std::ios::binary | std::ios::app)
            << corpus_.message();
    }

    /// Lines of which the `index`th says "line INDEX ", for a transcript of its own.
    std::vector<std::string> lines(std::size_t count) {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < count; ++i) {
            result.push_back(corpus_.textMessage("line " + std::to_string(i) + ' ', 1'000));
        }
        return result;
    }

private:
    static std::time_t minutes(std::size_t count) { return static_cast<std::time_t>(count * 60); }

    static void setAge(const fs::path& path, std::time_t seconds) {
        const timespec then{std::time(nullptr) - seconds, 0};
        const std::array<timespec, 2> times{then, then};
        utimensat(AT_FDCWD, path.c_str(), times.data(), 0);
    }

    TemporaryDirectory directory_;
    Corpus corpus_;
    std::vector<fs::path> transcripts_;
};

/// A median and a maximum.
struct Spread {
    double median = 0;
    double most = 0;
};

Spread spread(const std::vector<Cost>& costs, double Cost::*what) {
    std::vector<double> values(costs.size());
    std::transform(costs.begin(), costs.end(), values.begin(),
                   [what](const Cost& cost) { return cost.*what; });
    std::sort(values.begin(), values.end());
    return values.empty() ? Spread() : Spread{values[values.size() / 2], values.back()};
}

void printSpread(const char* name, const Spread& wall, const Spread& cpu, const char* target) {
    std::printf("| %s | median %.2f, longest %.2f ms; on the processor %.2f, %.2f ms | %s |\n",
                name, wall.median, wall.most, cpu.median, cpu.most, target);
}

void printSpread(const char* name, const std::vector<Cost>& costs, const char* target) {
    printSpread(name, spread(costs, &Cost::wall), spread(costs, &Cost::cpu), target);
}

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "engine-benchmark: %s\n", why);
    std::exit(EXIT_FAILURE);
}

/// Runs the engine for so many scans after the first ones, which read everything for the first
/// time. `onScan` is called after each that follows, with their number so far: first with 0.
class Measurement {
public:
    using OnScan = std::function<void(const AppState& state, int scans)>;

    Measurement(const Home& home, int scans, OnScan onScan)
        : engine_(home.path(), sessions), scans_(scans), onScan_(std::move(onScan)) {}

    void run() {
        engine_.start([this] { noteScan(); });
        QCoreApplication::exec();
        if (engine_.state().sessions().size() != sessions) {
            fail("not all sessions were found");
        }
    }

    const EngineCosts& costs() const { return costs_; }
    double ownPerScan() const { return own_ / scans_; }
    double psPerScan() const { return children_ / scans_; }
    double ownShare() const { return own_ / wall_ * 100; }
    double psShare() const { return children_ / wall_ * 100; }

private:
    /// The first computation of usage waits behind the first scan.
    static constexpr int firstScans = 2;

    void noteScan() {
        const int count = ++count_ - firstScans;
        if (count == 0) {
            engine_.takeCosts();
            meter_ = Meter();
        } else if (count == scans_) {
            own_ = meter_.own();
            children_ = meter_.children();
            wall_ = meter_.wall();
            costs_ = engine_.takeCosts();
            QCoreApplication::quit();
        }
        if (count >= 0) {
            onScan_(engine_.state(), count);
        }
    }

    MeasuredEngine engine_;
    const int scans_;
    const OnScan onScan_;
    int count_ = 0;
    Meter meter_;
    double own_ = 0;
    double children_ = 0;
    double wall_ = 0;
    EngineCosts costs_;
};

int scansIn(int seconds) {
    return std::max(1, static_cast<int>(seconds / RefreshEngine::sessionInterval));
}

void printHead(const char* name, int scans) {
    std::printf("\n| %s, %d scans | | target |\n| --- | --- | --- |\n", name, scans);
}

void printMainThread(const Measurement& measurement) {
    printSpread("pieces of work of the main thread", measurement.costs().mainThread,
                "longest 4 ms");
}

void measureResting(int seconds) {
    const Home home;
    Measurement measurement(home, scansIn(seconds), [](const AppState&, int) {});
    measurement.run();
    printHead("resting", scansIn(seconds));
    std::printf("| processor time for each scan | %.2f ms | 1.5 ms |\n", measurement.ownPerScan());
    std::printf("| its `ps` besides | %.2f ms | |\n", measurement.psPerScan());
    printSpread("scan, with waiting for `ps`", measurement.costs().scans, "");
    printSpread("`ps`, waiting for it", measurement.costs().listings, "");
    printMainThread(measurement);
}

using Activity = QHash<QString, Timestamp>;

Activity activityOf(const AppState& state) {
    Activity activity;
    for (const SessionInfo& session : state.sessions()) {
        activity.insert(session.id, session.lastActivityAt);
    }
    return activity;
}

void measureBurst(int seconds) {
    Home home;
    std::size_t grown = 0;
    Activity before;
    Measurement measurement(home, scansIn(seconds), [&](const AppState& state, int count) {
        const Activity now = activityOf(state);
        const auto changed = std::count_if(now.keyBegin(), now.keyEnd(), [&](const QString& id) {
            return now.value(id) != before.value(id);
        });
        if (count > 0 && changed != burstTranscripts) {
            fail("a scan did not find what had grown");
        }
        before = now;
        QTimer::singleShot(1'000, [&] {
            for (int i = 0; i < burstTranscripts; ++i) {
                home.grow(grown++);
            }
        });
    });
    measurement.run();
    printHead("20 of 50 transcripts grew", scansIn(seconds));
    printSpread("scan, with waiting for `ps`", measurement.costs().scans, "60 ms on the clock");
    printSpread("`ps`, waiting for it", measurement.costs().listings, "");
    printMainThread(measurement);
}

/// The number of the last line that the model knows of; -1 for none.
int knownLine(const AppState& state, const std::string& path) {
    for (const SessionInfo& session : state.sessions()) {
        if (session.id.toStdString() == path && !session.events.empty()) {
            return session.events.back().label.section(u' ', 1, 1).toInt();
        }
    }
    return -1;
}

void measureFollow(int seconds) {
    constexpr std::size_t linesPerSecond = 50;
    constexpr std::size_t warmUp = 30;
    Home home;
    const std::string path = home.path() / ".claude/projects/follow/followed.jsonl";
    fs::create_directories(fs::path(path).parent_path());
    const LineWriter writer(
        path, home.lines((static_cast<std::size_t>(seconds) + warmUp) * linesPerSecond),
        linesPerSecond);
    std::vector<Cost> delays;
    int known = -1;
    Measurement measurement(home, scansIn(seconds), [&](const AppState& state, int count) {
        const int last = knownLine(state, path);
        if (last <= known) {
            fail("a scan did not find the new lines");
        }
        for (int line = known + 1; count > 0 && line <= last; ++line) {
            delays.push_back({writer.age(static_cast<std::size_t>(line)), 0});
        }
        known = last;
    });
    measurement.run();
    printHead("one transcript grew by 50 lines a second", scansIn(seconds));
    const Spread delay = spread(delays, &Cost::wall);
    std::printf("| share of a processor | %.2f %% | 2 %% |\n", measurement.ownShare());
    std::printf("| that of its `ps` besides | %.2f %% | |\n", measurement.psShare());
    std::printf("| from a line to the model | median %.2f s, longest %.2f s | longest 2.1 s |\n",
                delay.median / 1e3, delay.most / 1e3);
    printSpread("scan, with waiting for `ps`", measurement.costs().scans, "");
    printMainThread(measurement);
}

int run(int argc, char** argv) {
    const std::string_view what = argc == 3 ? argv[1] : "";
    const int seconds = argc == 3 ? std::atoi(argv[2]) : 0; // NOLINT(cert-err34-c): 0 is refused
    const auto measure = what == "resting"  ? measureResting
                         : what == "burst"  ? measureBurst
                         : what == "follow" ? measureFollow
                                            : nullptr;
    if (measure == nullptr || seconds < 1) {
        std::fputs("usage: engine-benchmark resting|burst|follow SECONDS\n", stderr);
        return 2;
    }
    const QCoreApplication application(argc, argv);
    try {
        measure(seconds);
    } catch (const std::exception& error) {
        fail(error.what());
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    return sallowmere::run(argc, argv);
}
