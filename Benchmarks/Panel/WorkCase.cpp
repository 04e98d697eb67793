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
#include <string>

namespace sallowmere {

namespace {

using std::chrono::steady_clock;

/// What is measured apart from the others.
struct Situation {
    const char* name;
    bool isExpanded;
    bool isWorking;
    const char* target;
};

void measureSituation(const Situation& situation, const MeasuredProgram& measured, int seconds) {
    PanelHome home(measured.home);
    const Desktop desktop;
    ScreenWatch watch(desktop.display());
    watch.paintBackground();
    const int settling = std::max(1, seconds / 6);
    const auto work = situation.isWorking ? home.startWork(seconds + settling + 30) : nullptr;
    RunningPanel panel(desktop, watch, measured.program, home.path());
    if (situation.isExpanded) {
        panel.enter();
    }
    watch.framesUntil(steady_clock::now() + std::chrono::seconds(settling));
    const auto before = ProcessReadings::processorTime(panel.pid());
    const auto waits = ProcessReadings::waits(panel.pid());
    const int frames = watch.framesUntil(steady_clock::now() + std::chrono::seconds(seconds));
    const auto after = ProcessReadings::processorTime(panel.pid());
    const long waited = ProcessReadings::waitsBetween(waits, ProcessReadings::waits(panel.pid()));
    const double own = (after.own - before.own) / seconds / 10;
    const double children = (after.children - before.children) / seconds / 10;
    printRow(situation.name, situation.target, "%.2f %% | %.2f %% | %.2f %% | %d | %ld",
             own + children, own, children, frames, waited * 60 / seconds);
}

} // namespace

void measureWork(const MeasuredProgram& measured, int seconds) {
    std::printf("\n| processor time in %d seconds | of a core | itself | its `ps` | frames | waits "
                "in a minute | target |\n"
                "| --- | --- | --- | --- | --- | --- | --- |\n",
                seconds);
    measureSituation({"collapsed, nobody at work", false, false, "0.5 %, no frame"}, measured,
                     seconds);
    measureSituation({"collapsed, one session at work", false, true, "1.5 %"}, measured, seconds);
    measureSituation({"expanded, 8 sessions, nobody at work", true, false, "3 %"}, measured,
                     seconds);
    measureSituation({"expanded, 8 sessions, one at work", true, true, "3 %"}, measured, seconds);
}

} // namespace sallowmere
