// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Runs the panel on a desktop of its own and prints what it costs, as seen from outside:
// panel-benchmark CASE PROGRAM HOME AMOUNT
//   start     AMOUNT times: from the start of the process to the first frame of the bar
//   opening   AMOUNT times: from the pointer's coming to the first larger frame, and the growing
//   work      AMOUNT seconds for each situation: processor time, frames, waits
//   memory    AMOUNT seconds: what is resident, and what it is
//   peers     AMOUNT seconds for each panel: memory and processor time of others beside it
// HOME is a home directory that make-corpus has filled; the times of its files are changed.

#include "Panel/Cases.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

namespace sallowmere {
namespace {

int run(int argc, char** argv) {
    const std::string_view what = argc == 5 ? argv[1] : "";
    const int amount = argc == 5 ? std::atoi(argv[4]) : 0; // NOLINT(cert-err34-c): 0 is refused
    const auto measure = what == "start"     ? measureStart
                         : what == "opening" ? measureOpening
                         : what == "work"    ? measureWork
                         : what == "memory"  ? measureMemory
                         : what == "peers"   ? measurePeers
                                             : nullptr;
    if (measure == nullptr || amount < 1) {
        std::fputs("usage: panel-benchmark start|opening|work|memory|peers PROGRAM HOME AMOUNT\n",
                   stderr);
        return 2;
    }
    try {
        measure({argv[2], argv[3]}, amount);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "panel-benchmark: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    return sallowmere::run(argc, argv);
}
