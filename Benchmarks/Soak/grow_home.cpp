// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Keeps sessions at work below a home directory for so long: grow-home HOME SECONDS BYTES SEED
// Prints each half minute, and at the end, what became of them:
// "BYTES MESSAGES BEGUN GONE SHORTENED".

#include "Soak/World.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

namespace sallowmere {
namespace {

constexpr std::chrono::milliseconds turn(250);
constexpr int turnsPerReport = 120;

Timestamp present() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

WorldPace paceFor(double seconds, double bytes) {
    WorldPace pace;
    pace.sessions = 12;
    pace.bytesPerSecond = bytes / seconds;
    pace.stepBytes = 64 << 10;
    pace.largest = 12 << 20;
    pace.goingsPerHour = 20;
    pace.shorteningsPerHour = 40;
    pace.turnsPerHour = 240;
    return pace;
}

void report(const WorldCounts& counts) {
    std::printf("%llu %llu %llu %llu %llu\n", static_cast<unsigned long long>(counts.bytes),
                static_cast<unsigned long long>(counts.messages),
                static_cast<unsigned long long>(counts.begun),
                static_cast<unsigned long long>(counts.gone),
                static_cast<unsigned long long>(counts.shortened));
    std::fflush(stdout);
}

void run(const std::string& home, double seconds, double bytes, std::uint64_t seed) {
    World world(home, seed, paceFor(seconds, bytes));
    const Timestamp end = advancedBy(present(), seconds);
    Timestamp last = present();
    for (int turns = 1; last < end; ++turns) {
        std::this_thread::sleep_for(turn);
        const Timestamp now = present();
        world.step(now, secondsBetween(last, now));
        last = now;
        if (turns % turnsPerReport == 0) {
            report(world.counts());
        }
    }
    report(world.counts());
}

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: grow-home HOME SECONDS BYTES SEED\n", stderr);
        return 2;
    }
    try {
        sallowmere::run(argv[1], std::stod(argv[2]), std::stod(argv[3]), std::stoull(argv[4]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "grow-home: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
