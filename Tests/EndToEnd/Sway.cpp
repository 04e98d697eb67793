// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Sway.h"

#include "EndToEnd/Windows.h"
#include "X11/WaitFor.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sallowmere {

namespace {

constexpr uid_t nobody = 65'534;

/// When all is there it writes the names of its displays into a file.
std::string configuration(const std::string& displays) {
    return "xwayland enable\n"
           "focus_follows_mouse no\n"
           "exec echo \"$WAYLAND_DISPLAY $DISPLAY $SWAYSOCK\" > '"
           + displays + "'\n";
}

/// For this process and the programs that it starts.
void keepAccessToEverything() {
    constexpr std::uint32_t access = 1U << CAP_DAC_OVERRIDE;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct capabilities[2]{{access, access, access}, {0, 0, 0}};
    if (syscall(SYS_capset, &header, capabilities) != 0
        || prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_RAISE, CAP_DAC_OVERRIDE, 0, 0) != 0) {
        throw std::runtime_error("cannot keep access to the programs of the test");
    }
}

} // namespace

void becomeOrdinaryUser() {
    if (geteuid() != 0) {
        return;
    }
    // Nobody else may be allowed to look into the directory that the tests are built in.
    if (prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0) != 0 || setgroups(0, nullptr) != 0 || setgid(nobody) != 0
        || setuid(nobody) != 0) {
        throw std::runtime_error("cannot become an ordinary user");
    }
    keepAccessToEverything();
}

Sway::Sway(const XServer& server, XClient& outside) {
    std::filesystem::permissions(home_.makeDirectory("run"), std::filesystem::perms::owner_all);
    const std::string displays = home_ / "displays";
    const std::string config = home_.write("config", configuration(displays));
    process_ = std::make_unique<ChildProcess>(server.command(
        {"/usr/bin/sway", "-c", config}, {"XDG_RUNTIME_DIR=" + home_ / "run", "WLR_BACKENDS=x11",
                                          "WLR_RENDERER=pixman", "XDG_SESSION_TYPE=wayland"}));
    readDisplays(displays);
    takeKeyboard(outside);
}

void Sway::readDisplays(const std::string& file) {
    std::string wayland;
    waitFor("sway", [&] {
        std::ifstream stream(file);
        return static_cast<bool>(stream >> wayland >> display_ >> socket_);
    });
    variables_ = {"DISPLAY=" + display_, "WAYLAND_DISPLAY=" + wayland,
                  "XDG_RUNTIME_DIR=" + home_ / "run"};
}

void Sway::takeKeyboard(XClient& outside) const {
    xcb_window_t window = XCB_NONE;
    waitFor("sway's window", [&] {
        for (const xcb_window_t candidate : Windows::stack(outside)) {
            if (Windows::isViewable(outside, candidate)) {
                window = candidate;
            }
        }
        return window != XCB_NONE;
    });
    outside.setFocus(window);
}

void Sway::tell(const std::string& command) const {
    const std::string script = "exec /usr/bin/swaymsg -q -s \"$0\" \"$1\" >/dev/null 2>/dev/null";
    waitFor("sway to " + command, [&] {
        return run({"/bin/sh",
                    {"sh", "-c", script, socket_, command},
                    {"PATH=/usr/bin:/bin", "XDG_RUNTIME_DIR=" + home_ / "run"},
                    {}})
                   .exitStatus
               == 0;
    });
}

} // namespace sallowmere
