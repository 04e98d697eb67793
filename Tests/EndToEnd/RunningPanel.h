// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/AccessibleTree.h"
#include "EndToEnd/Buses.h"
#include "EndToEnd/LiveHome.h"
#include "EndToEnd/User.h"
#include "EndToEnd/Windows.h"
#include "System/ChildProcess.h"
#include "X11/XClient.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// How a program ended.
struct Ending {
    /// Absent when a signal ended it.
    std::optional<int> status;
    std::optional<int> signal;
};

/// What the program is started with beyond the usual.
struct Circumstances {
    /// In its environment, NAME=VALUE each, also instead of what the buses are found by.
    std::vector<std::string> variables;
    /// A program and its arguments that become the program in the end, which follows as another.
    std::vector<std::string> through;
};

/// The program, started on a home and a display.
class RunningPanel {
public:
    /// Does not wait for anything.
    RunningPanel(const LiveHome& home, const Buses& buses, const Circumstances& circumstances);

    pid_t pid() const { return process_.pid(); }
    /// What it wrote on standard error.
    std::string errors() const;
    /// Waits until it has ended by itself.
    Ending waitForEnd() const;
    bool hasEnded() const;
    void terminate() const;

private:
    std::string errors_;
    ChildProcess process_;
};

/// The window of a panel, as its user handles it.
class PanelWindow {
public:
    static constexpr int expandedWidth = 664;

    /// Waits until the panel is there, collapsed. `user` acts where the window can be seen.
    PanelWindow(XClient& client, User& user, const RunningPanel& panel);

    xcb_window_t window() const { return window_; }
    const AccessibleTree& tree() const { return tree_; }
    Box box() const;
    bool isExpanded() const;
    bool isCollapsed() const;
    void waitUntilExpanded() const;
    void waitUntilCollapsed() const;
    /// Waits until nothing in it moves any more.
    void waitForRest() const;

    /// Moves the pointer over the bar and waits until the list is there, and the other way round.
    void enter() const;
    void leave() const;
    /// Clicks on what has that name, once it lies still.
    void click(const std::string& name, const std::string& role = {}) const;
    Control atRest(const std::string& name, const std::string& role = {}) const;

private:
    XClient& client_;
    User& user_;
    AccessibleTree tree_;
    xcb_window_t window_ = XCB_NONE;
};

/// The window of that process's which is called Sallowmere; none as long as it is not shown.
std::optional<xcb_window_t> findPanel(XClient& client, pid_t program);

} // namespace sallowmere
