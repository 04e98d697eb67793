// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/WindowManager.h"

#include "X11/WaitFor.h"

#include <csignal>
#include <cstdlib>

#include <sys/wait.h>

namespace sallowmere {

namespace {

std::string managerName(XClient& client) {
    xcb_window_t window = XCB_NONE;
    xcb_ewmh_get_utf8_strings_reply_t reply;
    if (xcb_ewmh_get_supporting_wm_check_reply(
            client.ewmh(), xcb_ewmh_get_supporting_wm_check(client.ewmh(), client.root()), &window,
            nullptr)
            == 0
        || xcb_ewmh_get_wm_name_reply(client.ewmh(), xcb_ewmh_get_wm_name(client.ewmh(), window),
                                      &reply, nullptr)
               == 0) {
        return {};
    }
    std::string name(reply.strings, reply.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&reply);
    return name;
}

bool isComposited(XClient& client) {
    xcb_window_t owner = XCB_NONE;
    return xcb_ewmh_get_wm_cm_owner_reply(client.ewmh(), xcb_ewmh_get_wm_cm_owner(client.ewmh(), 0),
                                          &owner, nullptr)
               != 0
           && owner != XCB_NONE;
}

} // namespace

std::vector<std::string> WindowManager::programs(Kind kind) {
    switch (kind) {
    case Kind::openbox:
        return {"/usr/bin/openbox"};
    case Kind::xfwm4:
        return {"/usr/bin/xfwm4", "/usr/bin/dbus-daemon"};
    case Kind::i3:
        return {"/usr/bin/i3", "/usr/bin/i3-msg"};
    case Kind::kwin:
        return {"/usr/bin/kwin_x11", "/usr/bin/dbus-daemon"};
    case Kind::mutter:
        return {"/usr/bin/mutter", "/usr/bin/dbus-daemon"};
    }
    return {};
}

std::string WindowManager::name(Kind kind) {
    switch (kind) {
    case Kind::openbox:
        return "Openbox";
    case Kind::xfwm4:
        return "Xfwm4";
    case Kind::i3:
        return "i3";
    case Kind::kwin:
        return "KWin";
    case Kind::mutter:
        return "Mutter";
    }
    return {};
}

WindowManager::WindowManager(Kind kind, const XServer& server, XClient& client) : kind_(kind) {
    start(kind, server);
    waitFor(name(kind), [&] { return managerName(client) == name(kind); });
    if (kind == Kind::xfwm4) {
        waitFor("its compositor", [&] { return isComposited(client); });
    }
    // It gives its name before it is ready, and overlooks windows that come meanwhile.
    if (kind == Kind::i3) {
        // It has no desktop that nothing is on, but tells who asks.
        waitFor("its answer", [&] {
            return run(server.command({"/usr/bin/i3-msg", "-q", "nop"})).exitStatus == 0;
        });
    } else {
        client.showDesktop(1);
        client.showDesktop(0);
    }
}

void WindowManager::start(Kind kind, const XServer& server) {
    switch (kind) {
    case Kind::openbox:
        process_ = std::make_unique<ChildProcess>(server.command(
            {"/usr/bin/openbox", "--sm-disable", "--config-file", "/etc/xdg/openbox/rc.xml"}));
        return;
    case Kind::xfwm4:
        startXfwm4(server);
        return;
    case Kind::i3:
        startI3(server);
        return;
    case Kind::kwin:
        startKwin(server);
        return;
    case Kind::mutter:
        startOnBus(server, {"/usr/bin/mutter", "--x11"}, {});
        return;
    }
}

void WindowManager::startXfwm4(const XServer& server) {
    // It keeps its settings in another program, which the bus starts. Without this one it would
    // store it at first and start its compositor anew.
    server.home().write(".config/xfce4/xfconf/xfce-perchannel-xml/xfwm4.xml",
                        R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="use_compositing" type="bool" value="true"/>
  </property>
</channel>
)");
    startOnBus(server, {"/usr/bin/xfwm4", "--compositor=on", "--vblank=off"}, {});
}

void WindowManager::startI3(const XServer& server) {
    // The keyboard goes where it was sent, not where the pointer happens to be.
    const std::string configuration =
        server.home().write("i3", "# i3 config file (v4)\nfocus_follows_mouse no\n");
    process_ = std::make_unique<ChildProcess>(server.command({"/usr/bin/i3", "-c", configuration}));
}

void WindowManager::startKwin(const XServer& server) {
    server.home().write(".config/kwinrc", "[Desktops]\nNumber=2\nRows=1\n");
    startOnBus(server, {"/usr/bin/kwin_x11"}, {"KWIN_COMPOSE=N", "QT_QPA_PLATFORM=xcb"});
}

void WindowManager::startOnBus(const XServer& server,
                               const std::vector<std::string>& programAndArguments,
                               const std::vector<std::string>& variables) {
    const std::string runtime = "XDG_RUNTIME_DIR=" + server.home().path();
    bus_ = std::make_unique<ChildProcess>(server.command(
        {"/usr/bin/dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"},
        {runtime}));
    // Were it accessible, it would start what makes it so on this bus and announce that on the
    // display, for the panel too.
    std::vector<std::string> all{runtime, "DBUS_SESSION_BUS_ADDRESS=" + bus_->readLine(),
                                 "NO_AT_BRIDGE=1", "GTK_A11Y=none", "GSETTINGS_BACKEND=memory"};
    all.insert(all.end(), variables.begin(), variables.end());
    process_ = std::make_unique<ChildProcess>(server.command(programAndArguments, all));
}

void WindowManager::showEmptyWorkspace(const XServer& server, XClient& client) const {
    if (kind_ == Kind::i3) {
        server.run({"/usr/bin/i3-msg", "workspace", "2"});
        waitFor("another workspace", [&] { return client.desktop() != 0; });
    } else {
        client.showDesktop(1);
    }
}

void WindowManager::stop() {
    ::kill(process_->pid(), SIGSTOP);
    siginfo_t stopped{};
    waitid(P_PID, static_cast<id_t>(process_->pid()), &stopped, WSTOPPED | WNOWAIT);
}

void WindowManager::goOn() {
    ::kill(process_->pid(), SIGCONT);
}

void WindowManager::kill() {
    ::kill(process_->pid(), SIGKILL);
    process_->finish();
}

} // namespace sallowmere
