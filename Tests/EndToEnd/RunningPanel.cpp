// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/RunningPanel.h"

#include "X11/WaitFor.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>

#include <sys/wait.h>

namespace sallowmere {

namespace {

constexpr int collapsedHeight = 30;

Command panelCommand(const LiveHome& home, const Buses& buses, const std::string& errors,
                     const Circumstances& circumstances) {
    const std::string& directory = home.directory().path();
    Command command{
        "/bin/sh", {"sh", "-c", "exec 2>>\"$0\" \"$@\"", errors}, buses.variables(), directory};
    command.arguments.insert(command.arguments.end(), circumstances.through.begin(),
                             circumstances.through.end());
    command.arguments.emplace_back(SALLOWMERE_EXECUTABLE);
    // Of two of one name the shell takes the later one.
    const std::vector<std::string> usual{
        "HOME=" + directory,   "XDG_RUNTIME_DIR=" + directory + "/run",
        "PATH=/usr/bin:/bin",  "LANG=C.UTF-8",
        "QT_QPA_PLATFORM=xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};
    command.environment.insert(command.environment.end(), circumstances.variables.begin(),
                               circumstances.variables.end());
#ifdef __SANITIZE_ADDRESS__
    // Its views are not compiled ahead of time there, and would be kept in the user's cache.
    command.environment.push_back("QML_DISABLE_DISK_CACHE=1");
#endif
    command.environment.insert(command.environment.end(), usual.begin(), usual.end());
    return command;
}

} // namespace

RunningPanel::RunningPanel(const LiveHome& home, const Buses& buses,
                           const Circumstances& circumstances)
    : errors_(home.directory() / "panel-errors"),
      process_(panelCommand(home, buses, errors_, circumstances)) {}

std::string RunningPanel::errors() const {
    std::ifstream stream(errors_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool RunningPanel::hasEnded() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(pid()), &ended, WEXITED | WNOHANG | WNOWAIT) == 0
           && ended.si_pid == pid();
}

Ending RunningPanel::waitForEnd() const {
    waitFor("the panel to end", [this] { return hasEnded(); });
    siginfo_t ended{};
    waitid(P_PID, static_cast<id_t>(pid()), &ended, WEXITED | WNOWAIT);
    Ending ending;
    (ended.si_code == CLD_EXITED ? ending.status : ending.signal) = ended.si_status;
    return ending;
}

void RunningPanel::terminate() const {
    kill(pid(), SIGTERM);
}

std::optional<xcb_window_t> findPanel(XClient& client, pid_t program) {
    for (const xcb_window_t window : Windows::stack(client)) {
        if (Windows::isViewable(client, window)
            && Windows::text(client, window, "_NET_WM_NAME") == "Sallowmere"
            && Windows::number(client, window, "_NET_WM_PID")
                   == static_cast<std::uint32_t>(program)) {
            return window;
        }
    }
    return std::nullopt;
}

PanelWindow::PanelWindow(XClient& client, User& user, const RunningPanel& panel)
    : client_(client), user_(user), tree_(panel.pid()) {
    waitFor("the panel's window", [&] {
        const std::optional<xcb_window_t> found = findPanel(client, panel.pid());
        window_ = found.value_or(XCB_NONE);
        return found.has_value() || panel.hasEnded();
    });
    if (panel.hasEnded()) {
        throw std::runtime_error("the panel ended: " + panel.errors());
    }
    waitUntilCollapsed();
}

Box PanelWindow::box() const {
    return Windows::box(client_, window_);
}

bool PanelWindow::isExpanded() const {
    return Windows::geometry(client_, window_).width == expandedWidth;
}

bool PanelWindow::isCollapsed() const {
    return box().height == collapsedHeight;
}

void PanelWindow::waitUntilExpanded() const {
    waitFor("the panel to expand", [this] { return isExpanded(); });
}

void PanelWindow::waitUntilCollapsed() const {
    waitFor("the panel to collapse", [this] { return isCollapsed(); });
}

void PanelWindow::waitForRest() const {
    // Much longer than from one frame of its animation to the next.
    constexpr auto stillness = std::chrono::milliseconds(300);
    Box last = box();
    auto since = std::chrono::steady_clock::now();
    waitFor("the panel to rest", [&] {
        const Box present = box();
        if (!(present == last)) {
            last = present;
            since = std::chrono::steady_clock::now();
        }
        return std::chrono::steady_clock::now() - since > stillness;
    });
}

void PanelWindow::enter() const {
    const Box bar = box();
    int step = 0;
    waitFor("the panel to expand under the pointer", [&] {
        // A hand is never quite still; a compositor that has just started overlooks its first
        // moves.
        user_.moveTo(bar.x + bar.width / 2 + step++ % 8, bar.y + collapsedHeight / 2);
        return isExpanded();
    });
    waitForRest();
}

void PanelWindow::leave() const {
    const Box screen = Windows::screen(client_);
    user_.moveTo(screen.width - 4, screen.height - 4);
    waitUntilCollapsed();
    waitForRest();
}

Control PanelWindow::atRest(const std::string& name, const std::string& role) const {
    Control control = tree_.find(name, role);
    waitFor('"' + name + "\" to lie still", [&] {
        const Box before = control.box;
        waitForRest();
        control = tree_.find(name, role);
        return control.box == before && box().contains(before);
    });
    return control;
}

void PanelWindow::click(const std::string& name, const std::string& role) const {
    user_.clickOn(atRest(name, role).box);
}

} // namespace sallowmere
