// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Desktop.h"

#include "Panel/ScreenWatch.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// Without its end; empty when the other side closes before that.
std::string lineFrom(int descriptor) {
    std::string line;
    char letter = 0;
    while (read(descriptor, &letter, 1) == 1) {
        if (letter == '\n') {
            return line;
        }
        line += letter;
    }
    return {};
}

} // namespace

Desktop::Desktop() {
    const std::string runtime = directory_.path() / "runtime";
    if (mkdir(runtime.c_str(), 0700) != 0) {
        throw std::system_error(errno, std::generic_category(), runtime);
    }
    startServer();
    startWindowManager();
}

ChildProgram::Command Desktop::command(const std::vector<std::string>& arguments,
                                       const std::string& home) const {
    const std::string runtime = directory_.path() / "runtime";
    return {arguments,
            {"HOME=" + home, "PATH=/usr/bin:/bin", "LANG=C.UTF-8", "DISPLAY=" + display_,
             "XDG_RUNTIME_DIR=" + runtime,
             // Or else a bus that is there for all sessions of the user would be used.
             "DBUS_SESSION_BUS_ADDRESS=unix:path=" + runtime + "/none"},
            directory_.path() / "log"};
}

std::string Desktop::log() const {
    std::ifstream file(directory_.path() / "log");
    return {std::istreambuf_iterator<char>(file), {}};
}

void Desktop::startServer() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    ChildProgram::Command command =
        this->command({"/usr/bin/Xvfb", "-displayfd", std::to_string(ends[1]), "-nolisten", "tcp",
                       "-noreset", "-screen", "0", "1920x1080x24"},
                      directory_.path());
    command.inherited = ends[1];
    server_ = std::make_unique<ChildProgram>(command);
    close(ends[1]);
    const std::string number = lineFrom(ends[0]);
    close(ends[0]);
    if (number.empty()) {
        throw std::runtime_error("no X server: " + log());
    }
    display_ = ':' + number;
}

void Desktop::startWindowManager() {
    windowManager_ = std::make_unique<ChildProgram>(
        command({"/usr/bin/openbox", "--sm-disable", "--config-file", "/etc/xdg/openbox/rc.xml"},
                directory_.path()));
    ScreenWatch(display_).waitForWindowManager();
}

} // namespace sallowmere
