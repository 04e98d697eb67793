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
    return kind == Kind::openbox
               ? std::vector<std::string>{"/usr/bin/openbox"}
               : std::vector<std::string>{"/usr/bin/xfwm4", "/usr/bin/dbus-daemon"};
}

std::string WindowManager::name(Kind kind) {
    return kind == Kind::openbox ? "Openbox" : "Xfwm4";
}

WindowManager::WindowManager(Kind kind, const XServer& server, XClient& client) {
    if (kind == Kind::openbox) {
        startOpenbox(server);
    } else {
        startXfwm4(server);
    }
    waitFor(name(kind), [&] { return managerName(client) == name(kind); });
    if (kind == Kind::xfwm4) {
        waitFor("its compositor", [&] { return isComposited(client); });
    }
    // It gives its name before it is ready, and overlooks windows that come meanwhile.
    client.showDesktop(1);
    client.showDesktop(0);
}

void WindowManager::startOpenbox(const XServer& server) {
    process_ = std::make_unique<ChildProcess>(server.command(
        {"/usr/bin/openbox", "--sm-disable", "--config-file", "/etc/xdg/openbox/rc.xml"}));
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
    const std::string runtime = "XDG_RUNTIME_DIR=" + server.home().path();
    bus_ = std::make_unique<ChildProcess>(server.command(
        {"/usr/bin/dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"},
        {runtime}));
    const std::string address = "DBUS_SESSION_BUS_ADDRESS=" + bus_->readLine();
    process_ = std::make_unique<ChildProcess>(
        server.command({"/usr/bin/xfwm4", "--compositor=on", "--vblank=off"},
                       {runtime, address, "NO_AT_BRIDGE=1", "GSETTINGS_BACKEND=memory"}));
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
