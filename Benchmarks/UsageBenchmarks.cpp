// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Corpus.h"
#include "TemporaryDirectory.h"

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Usage/UsageCalculator.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace sallowmere {
namespace {

/// Transcripts of one turn or two each, and what is needed to compute usage from them.
class SmallFiles {
public:
    explicit SmallFiles(std::int64_t count) {
        settings.claudeRoot = directory.path().string();
        Corpus().write(directory.path(), static_cast<int>(count),
                       static_cast<std::uint64_t>(count) * 1'000);
    }

    TemporaryDirectory directory;
    LinuxFileSystem files;
    Settings settings;
    Clock now = linuxClock();
};

std::size_t listAll(const LinuxFileSystem& files, const std::string& root) {
    std::size_t found = 0;
    std::vector<std::string> directories(1, root);
    while (!directories.empty()) {
        const std::string directory = directories.back();
        directories.pop_back();
        files.list(directory, [&](std::string_view name, EntryType type) {
            const std::string path = joinPath(directory, name);
            if (type == EntryType::directory) {
                directories.push_back(path);
            } else {
                found += files.status(path, Links::keep).has_value() ? 1U : 0U;
            }
        });
    }
    return found;
}

/// The floor of a computation in which nothing changed: list the directories, ask for each file.
void listingAlone(benchmark::State& state) {
    const SmallFiles home(state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(listAll(home.files, home.settings.claudeRoot));
    }
}
BENCHMARK(listingAlone)->Arg(300)->Arg(3'000)->Arg(30'000)->Unit(benchmark::kMicrosecond);

void usageNothingChanged(benchmark::State& state) {
    const SmallFiles home(state.range(0));
    UsageCalculator calculator(home.files);
    calculator.compute(home.settings, home.now());
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(calculator.compute(home.settings, home.now()));
    }
}
BENCHMARK(usageNothingChanged)->Arg(300)->Arg(3'000)->Arg(30'000)->Unit(benchmark::kMicrosecond);

void usageFourKibibytesAppended(benchmark::State& state) {
    const SmallFiles home(state.range(0));
    UsageCalculator calculator(home.files);
    calculator.compute(home.settings, home.now());
    Corpus corpus(2);
    std::string lines = corpus.transcript(4'096, 60);
    lines.resize(lines.rfind('\n', 4'096) + 1);
    std::ofstream file(home.directory.path() / "-home-user-code-project-0" / "growing.jsonl",
                       std::ios::binary | std::ios::app);
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        file << lines << std::flush;
        state.ResumeTiming();
        benchmark::DoNotOptimize(calculator.compute(home.settings, home.now()));
    }
}
BENCHMARK(usageFourKibibytesAppended)->Arg(300)->Unit(benchmark::kMicrosecond);

/// 64 MiB: read alone, and computed for the first time.
class LargeFiles {
public:
    LargeFiles() {
        settings.claudeRoot = directory.path().string();
        Corpus().write(directory.path(), 16, bytes);
    }

    static constexpr std::uint64_t bytes = 64 << 20;
    TemporaryDirectory directory;
    LinuxFileSystem files;
    Settings settings;
    Clock now = linuxClock();
};

void readingAlone(benchmark::State& state) {
    const LargeFiles home;
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.directory.path())) {
        if (entry.is_regular_file()) {
            paths.push_back(entry.path());
        }
    }
    const auto buffer = std::make_unique<char[]>(UsageCalculator::readChunk);
    for ([[maybe_unused]] auto iteration : state) {
        for (const std::string& path : paths) {
            const auto file = home.files.open(path);
            std::uint64_t offset = 0;
            while (const std::size_t count =
                       file->read(offset, {buffer.get(), UsageCalculator::readChunk}).value_or(0)) {
                offset += count;
            }
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(home.bytes) * state.iterations());
}
BENCHMARK(readingAlone)->Unit(benchmark::kMillisecond);

void usageFirstComputation(benchmark::State& state) {
    const LargeFiles home;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(UsageCalculator(home.files).compute(home.settings, home.now()));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(home.bytes) * state.iterations());
}
BENCHMARK(usageFirstComputation)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace sallowmere
