// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Corpus.h"
#include "TemporaryDirectory.h"

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Sallowmere/Processes/ProcessScanner.h"
#include "Sallowmere/Sessions/SessionScanner.h"

#include <benchmark/benchmark.h>

#include <fstream>

namespace sallowmere {
namespace {

/// Fifty transcripts of a megabyte.
class Sessions {
public:
    Sessions() {
        settings.claudeRoot = directory.path().string();
        settings.maxSessions = 50;
        Corpus().write(directory.path(), 50, 50 << 20);
    }

    std::filesystem::path anyTranscript() const {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.path())) {
            if (entry.is_regular_file()) {
                return entry.path();
            }
        }
        return {};
    }

    TemporaryDirectory directory;
    LinuxFileSystem files;
    Settings settings;
    Clock now = linuxClock();
};

void sessionsFirstScan(benchmark::State& state) {
    const Sessions home;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(SessionScanner(home.files).scan(home.settings, home.now()));
    }
}
BENCHMARK(sessionsFirstScan)->Unit(benchmark::kMicrosecond);

void sessionsNothingChanged(benchmark::State& state) {
    const Sessions home;
    SessionScanner scanner(home.files);
    scanner.scan(home.settings, home.now());
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(scanner.scan(home.settings, home.now()));
    }
}
BENCHMARK(sessionsNothingChanged)->Unit(benchmark::kMicrosecond);

void sessionsOneChanged(benchmark::State& state) {
    const Sessions home;
    SessionScanner scanner(home.files);
    scanner.scan(home.settings, home.now());
    std::ofstream file(home.anyTranscript(), std::ios::binary | std::ios::app);
    const std::string line = Corpus(2).message();
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        file << line << std::flush;
        state.ResumeTiming();
        benchmark::DoNotOptimize(scanner.scan(home.settings, home.now()));
    }
}
BENCHMARK(sessionsOneChanged)->Unit(benchmark::kMicrosecond);

/// A table that has run `ps` once.
class RecordedProcesses : public LinuxProcessTable {
public:
    std::string listing() const override { return recorded_; }

private:
    std::string recorded_ = LinuxProcessTable::listing();
};

void processesWithoutPs(benchmark::State& state) {
    const RecordedProcesses processes;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(ProcessScanner::scan(processes));
    }
}
BENCHMARK(processesWithoutPs)->Unit(benchmark::kMicrosecond);

void psAlone(benchmark::State& state) {
    const LinuxProcessTable processes;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(processes.listing());
    }
}
BENCHMARK(psAlone)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
} // namespace sallowmere
