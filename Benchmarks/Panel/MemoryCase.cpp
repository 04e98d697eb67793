// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Cases.h"
#include "Panel/Desktop.h"
#include "Panel/PanelHome.h"
#include "Panel/ProcessReadings.h"
#include "Panel/RunningPanel.h"
#include "Panel/Table.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace sallowmere {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds growing(250);

/// Returns when the window has got a height that satisfies the condition.
template <typename Condition>
void waitForHeight(ScreenWatch& watch, Condition condition) {
    const auto deadline = steady_clock::now() + std::chrono::seconds(30);
    while (const auto event = watch.next(deadline)) {
        if (event->kind == ScreenWatch::Event::Kind::configured && condition(event->height)) {
            return;
        }
    }
    throw std::runtime_error("the panel does not follow the pointer");
}

void openAndClose(RunningPanel& panel, ScreenWatch& watch) {
    const int bar = panel.barHeight();
    panel.enter();
    waitForHeight(watch, [bar](int height) { return height > bar; });
    watch.framesUntil(steady_clock::now() + growing);
    panel.leave();
    waitForHeight(watch, [bar](int height) { return height == bar; });
}

void printMemory(const std::string& what, const ProcessReadings::Memory& memory) {
    printRow(what.c_str(), "", "%.1f | %.1f | %.1f", memory.resident, memory.proportional,
             memory.privateDirty);
}

void printMappings(pid_t process) {
    constexpr std::size_t shown = 15;
    std::printf("\n| mapped, MiB | resident | proportional | private and changed |\n"
                "| --- | --- | --- | --- |\n");
    auto mappings = ProcessReadings::mappings(process);
    mappings.resize(std::min(mappings.size(), shown));
    for (const auto& [name, memory] : mappings) {
        std::printf("| %s | %.1f | %.1f | %.1f |\n", name.c_str(), memory.resident,
                    memory.proportional, memory.privateDirty);
    }
}

} // namespace

void measureMemory(const MeasuredProgram& measured, int seconds) {
    const PanelHome home(measured.home);
    const Desktop desktop;
    ScreenWatch watch(desktop.display());
    watch.paintBackground();
    RunningPanel panel(desktop, watch, measured.program, home.path());
    const int openings = std::max(1, seconds / 6);
    std::printf("\n| memory, MiB | resident | proportional | private and changed | target |\n"
                "| --- | --- | --- | --- | --- |\n");
    const int settling = std::min(5, seconds);
    watch.framesUntil(steady_clock::now() + std::chrono::seconds(settling));
    printMemory("seconds after the start: " + std::to_string(settling),
                ProcessReadings::memory(panel.pid()));
    for (int i = 0; i < openings; ++i) {
        openAndClose(panel, watch);
    }
    printMemory("openings without a pause later: " + std::to_string(openings),
                ProcessReadings::memory(panel.pid()));
    const auto begin = steady_clock::now();
    for (int i = 1; i <= openings; ++i) {
        openAndClose(panel, watch);
        watch.framesUntil(begin + std::chrono::seconds(seconds) * i / openings);
    }
    const auto last = ProcessReadings::memory(panel.pid());
    printRow(("as many openings in so many seconds later: " + std::to_string(seconds)).c_str(),
             "60 resident, no growth", "%.1f | %.1f | %.1f", last.resident, last.proportional,
             last.privateDirty);
    printMappings(panel.pid());
}

} // namespace sallowmere
