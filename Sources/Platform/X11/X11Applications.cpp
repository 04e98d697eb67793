// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Applications.h"

#include "Platform/X11/ProcessLineage.h"
#include "Platform/X11/TerminalApplications.h"
#include "Platform/X11/WindowText.h"
#include "Platform/X11/XcbMemory.h"

#include <algorithm>
#include <set>

namespace sallowmere {

std::optional<RunningApplication> X11Applications::ofProcess(std::int32_t pid) {
    if (!connection_.isAlive()) {
        return std::nullopt;
    }
    std::set<std::int32_t> owners;
    for (const xcb_window_t window : windows_.frontToBack()) {
        if (const auto owner = windows_.process(window)) {
            owners.insert(*owner);
        }
    }
    for (const std::int32_t candidate : ProcessLineage::of(pid)) {
        if (owners.contains(candidate)) {
            return RunningApplication{candidate};
        }
    }
    return std::nullopt;
}

std::optional<RunningApplication> X11Applications::withIdentifier(std::string_view identifier) {
    if (!connection_.isAlive()) {
        return std::nullopt;
    }
    const std::vector<std::string_view> wanted = TerminalApplications::namesOf(identifier);
    for (const xcb_window_t window : windows_.frontToBack()) {
        const std::vector<std::string> names = windows_.applicationNames(window);
        const auto found = std::find_first_of(names.begin(), names.end(), wanted.begin(),
                                              wanted.end(), WindowText::isSameName);
        const auto owner = found == names.end() ? std::nullopt : windows_.process(window);
        if (owner) {
            return RunningApplication{*owner};
        }
    }
    return std::nullopt;
}

void X11Applications::activate(RunningApplication application) {
    if (!connection_.isAlive()) {
        return;
    }
    const std::vector<xcb_window_t> windows = windows_.ofProcess(application.pid);
    if (!windows.empty()) {
        bringToFront(windows.front());
    }
}

std::vector<ApplicationWindow> X11Applications::windows(RunningApplication application) {
    std::vector<ApplicationWindow> result;
    if (connection_.isAlive()) {
        for (const xcb_window_t window : windows_.ofProcess(application.pid)) {
            result.push_back({window, windows_.title(window)});
        }
    }
    return result;
}

void X11Applications::raise(const ApplicationWindow& window) {
    if (connection_.isAlive() && connection_.hasWindowManager()) {
        bringToFront(static_cast<xcb_window_t>(window.id));
    }
}

// Asked as a pager asks: on the user's behalf, which is when window managers bring back what is
// minimised, and do not take the wish for a program's own pushing. Not all of them turn to another
// desktop by themselves.
void X11Applications::bringToFront(xcb_window_t window) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    const int screen = connection_.screen();
    if (const auto desktop = windows_.otherDesktop(window)) {
        xcb_ewmh_request_change_current_desktop(ewmh, screen, *desktop, connection_.serverTime());
    }
    xcb_ewmh_request_change_active_window(ewmh, screen, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          connection_.serverTime(), XCB_NONE);
    xcb_flush(connection_.xcb());
}

bool X11Applications::hasKeyboard(RunningApplication application) {
    if (!connection_.isAlive() || connection_.isKeyboardGrabbed()) {
        return false;
    }
    xcb_connection_t* const xcb = connection_.xcb();
    const XcbMemory<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    if (!reply) {
        return false;
    }
    const std::vector<xcb_window_t> windows = windows_.ofProcess(application.pid);
    return std::any_of(windows.begin(), windows.end(), [&](xcb_window_t window) {
        return windows_.contains(window, reply->focus);
    });
}

} // namespace sallowmere
