// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/RunningPanel.h"

#include <stdexcept>

namespace sallowmere {

RunningPanel::RunningPanel(const Desktop& desktop, ScreenWatch& watch, const std::string& program,
                           const std::string& home)
    : watch_(watch), program_((leave(), watch.followScreen(), desktop.command({program}, home))) {
    waitForBar(desktop);
    watch_.followWindow(window_);
}

void RunningPanel::waitForBar(const Desktop& desktop) {
    const auto deadline = program_.startedAt() + std::chrono::seconds(30);
    while (const auto event = watch_.next(deadline)) {
        if (isBarShown(*event)) {
            const std::chrono::duration<double, std::milli> time = event->at - program_.startedAt();
            startTime_ = time.count();
            return;
        }
    }
    throw std::runtime_error("the program shows no bar: " + desktop.log());
}

bool RunningPanel::isBarShown(const ScreenWatch::Event& event) {
    if (event.kind == ScreenWatch::Event::Kind::mapped
        && watch_.ownerOf(event.window) == program_.pid()) {
        window_ = event.window;
        barHeight_ = watch_.areaOf(window_).height;
    }
    return window_ != XCB_NONE && watch_.showsBar(watch_.areaOf(window_));
}

} // namespace sallowmere
