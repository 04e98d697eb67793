// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// The engine and the model for days, as fast as they go, and what they keep: engine-soak DAYS SEED
// Prints a row for each simulated day, and one for when all sessions are gone for longer than the
// calculator remembers, which is a week and five hours. Ends with status 1 when what they keep
// grows once as much is forgotten as is learned, or when something is left in the end.

#include "Soak/Fortnight.h"
#include "TemporaryDirectory.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace sallowmere {
namespace {

constexpr int refreshesPerDay = 43'200;
/// The first day at whose end everything that can be remembered is.
constexpr std::size_t fullAfter = 8;
/// MiB a day, by least squares: single days differ, because a clock that jumps makes a week hold
/// more work or less.
constexpr double mostGrowth = 0.2;

/// MiB that may be left in the end: of prompts that failed the model keeps what was said.
constexpr double mostLeft = 1;

struct Reading {
    double residentMiB = 0;
    double heapMiB = 0;
    long descriptors = 0;
    std::size_t waiting = 0;
};

Reading reading(const Fortnight& fortnight) {
    malloc_trim(0);
    Reading result;
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    result.residentMiB = static_cast<double>(pages * sysconf(_SC_PAGESIZE)) / (1 << 20);
    const struct mallinfo2 heap = mallinfo2();
    result.heapMiB = static_cast<double>(heap.uordblks + heap.hblkhd) / (1 << 20);
    result.descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                       std::filesystem::directory_iterator());
    result.waiting = fortnight.time().waiting();
    return result;
}

void printHead() {
    std::puts("| day | resident MiB | heap MiB | descriptors | timers | listed | written MiB "
              "| messages | begun | gone | shorter | seconds |");
    std::puts("| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |");
}

void printRow(const std::string& day, const Reading& reading, Fortnight& fortnight,
              double seconds) {
    const WorldCounts& counts = fortnight.world().counts();
    std::printf(
        "| %s | %.1f | %.1f | %ld | %zu | %zu | %.0f | %llu | %llu | %llu | %llu | %.0f |\n",
        day.c_str(), reading.residentMiB, reading.heapMiB, reading.descriptors, reading.waiting,
        fortnight.engine().state().sessions().size(), static_cast<double>(counts.bytes) / (1 << 20),
        static_cast<unsigned long long>(counts.messages),
        static_cast<unsigned long long>(counts.begun), static_cast<unsigned long long>(counts.gone),
        static_cast<unsigned long long>(counts.shortened), seconds);
    std::fflush(stdout);
}

void printDeeds(Fortnight& fortnight) {
    SoakedEngine& engine = fortnight.engine();
    std::printf("\nscans taken over %llu, official service asked %llu times, prompts %llu, digits "
                "typed %llu, cues %llu, permission requests %llu\n",
                static_cast<unsigned long long>(engine.scans()),
                static_cast<unsigned long long>(engine.service().asked()),
                static_cast<unsigned long long>(engine.prompts()),
                static_cast<unsigned long long>(engine.typed()),
                static_cast<unsigned long long>(engine.played()),
                static_cast<unsigned long long>(fortnight.permissions()));
}

/// MiB a day of what has been read since the first full day.
double growth(const std::vector<Reading>& days, double Reading::*member) {
    const auto count = static_cast<double>(days.size() - fullAfter + 1);
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    for (std::size_t day = fullAfter - 1; day < days.size(); ++day) {
        const auto x = static_cast<double>(day);
        sumX += x;
        sumY += days[day].*member;
        sumXX += x * x;
        sumXY += x * days[day].*member;
    }
    return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

bool isFlat(const std::vector<Reading>& days) {
    const double resident = growth(days, &Reading::residentMiB);
    const double heap = growth(days, &Reading::heapMiB);
    std::printf("from day %zu on resident %+.3f, heap %+.3f MiB a day\n", fullAfter, resident,
                heap);
    return resident <= mostGrowth && heap <= mostGrowth
           && std::all_of(days.begin(), days.end(), [&](const Reading& day) {
                  return day.descriptors == days.front().descriptors;
              });
}

bool isForgotten(const Reading& before, const Reading& after) {
    return after.heapMiB <= before.heapMiB + mostLeft && after.descriptors == before.descriptors;
}

/// Takes readings and prints them.
class Diary {
public:
    explicit Diary(Fortnight& fortnight) : fortnight_(fortnight) { printHead(); }

    Reading note(const std::string& day) {
        const Reading present = reading(fortnight_);
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
        printRow(day, present, fortnight_, passed.count());
        return present;
    }

private:
    Fortnight& fortnight_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

int run(int days, std::uint64_t seed) {
    const TemporaryDirectory home;
    Fortnight fortnight(home.path(), seed);
    Diary diary(fortnight);
    const Reading before = diary.note("before");
    std::vector<Reading> readings;
    for (int day = 1; day <= days; ++day) {
        for (int turn = 0; turn < refreshesPerDay; ++turn) {
            fortnight.step();
        }
        readings.push_back(diary.note(std::to_string(day)));
    }
    fortnight.forget();
    const bool wasForgotten = isForgotten(before, diary.note("all gone"));
    printDeeds(fortnight);
    const bool isLong = readings.size() > fullAfter;
    const bool wasFlat = !isLong || isFlat(readings);
    std::puts(!wasFlat ? "FAILED: not flat" : isLong ? "flat" : "too few days to tell a slope");
    std::puts(wasForgotten ? "forgotten what is gone" : "FAILED: not forgotten what is gone");
    return wasFlat && wasForgotten ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    const int days = argc == 3 ? std::atoi(argv[1]) : 0; // NOLINT(cert-err34-c): 0 is refused
    if (days < 1) {
        std::fputs("usage: engine-soak DAYS SEED\n", stderr);
        return 2;
    }
    const QCoreApplication application(argc, argv);
    try {
        return sallowmere::run(days, std::stoull(argv[2]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "engine-soak: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
