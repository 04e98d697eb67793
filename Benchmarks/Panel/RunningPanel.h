// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Panel/ChildProgram.h"
#include "Panel/Desktop.h"
#include "Panel/ScreenWatch.h"

#include <string>

namespace sallowmere {

/// The program on a desktop, from the first frame of its bar until the object goes.
class RunningPanel {
public:
    /// Half-way down the bar and in its middle.
    static constexpr int barX = 960;
    static constexpr int barY = 5;

    /// Throws when there is no bar after half a minute. The pointer is away from the bar.
    RunningPanel(const Desktop& desktop, ScreenWatch& watch, const std::string& program,
                 const std::string& home);

    pid_t pid() const { return program_.pid(); }
    xcb_window_t window() const { return window_; }
    int barHeight() const { return barHeight_; }
    /// Milliseconds from the start of the process to the first frame.
    double startTime() const { return startTime_; }

    void enter() { watch_.movePointer(barX, barY); }
    void leave() { watch_.movePointer(0, 1'079); }

private:
    void waitForBar(const Desktop& desktop);
    bool isBarShown(const ScreenWatch::Event& event);

    ScreenWatch& watch_;
    ChildProgram program_;
    xcb_window_t window_ = XCB_NONE;
    int barHeight_ = 0;
    double startTime_ = 0;
};

} // namespace sallowmere
