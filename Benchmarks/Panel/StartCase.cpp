// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Cases.h"
#include "Panel/Desktop.h"
#include "Panel/PanelHome.h"
#include "Panel/RunningPanel.h"
#include "Panel/Table.h"

#include <string>

namespace sallowmere {

void measureStart(const MeasuredProgram& measured, int runs) {
    const PanelHome home(measured.home);
    const Desktop desktop;
    ScreenWatch watch(desktop.display());
    watch.paintBackground();
    const auto startTime = [&] {
        return RunningPanel(desktop, watch, measured.program, home.path()).startTime();
    };
    const double first = startTime();
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        times.push_back(startTime());
    }
    const Spread time = spreadOf(times);
    printTargetHead(("start, " + std::to_string(runs) + " times").c_str());
    printRow("to the first frame of the bar", "150 ms",
             "median %.0f, fastest %.0f, slowest %.0f ms", time.median, time.least, time.most);
    printRow("the first time, which fills its caches", "", "%.0f ms", first);
}

} // namespace sallowmere
