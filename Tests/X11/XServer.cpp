// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/XServer.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <unistd.h>

namespace sallowmere {

namespace {

/// Its errors go into the log.
Command logged(const TemporaryHome& home, const std::vector<std::string>& programAndArguments) {
    Command command;
    command.program = "/bin/sh";
    command.arguments = {"sh", "-c", "exec \"$@\" 2>>\"$HOME/log\"", "sh"};
    command.arguments.insert(command.arguments.end(), programAndArguments.begin(),
                             programAndArguments.end());
    command.environment = {"HOME=" + home.path(), "PATH=/usr/bin:/bin", "LANG=C.UTF-8"};
    command.directory = home.path();
    return command;
}

Command serverCommand(const TemporaryHome& home, const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"/usr/bin/Xvfb", "-displayfd", "1", "-nolisten",  "tcp",
                                 "-noreset",      "-screen",    "0", "1024x768x24"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return logged(home, all);
}

} // namespace

XServer::XServer(const std::vector<std::string>& arguments)
    : process_(serverCommand(home_, arguments)) {
    const std::string number = process_.readLine();
    if (number.empty()) {
        throw std::runtime_error("no X server: " + log());
    }
    display_ = ':' + number;
}

XServer::~XServer() {
    ::kill(process_.pid(), SIGTERM);
    process_.finish();
}

Command XServer::command(const std::vector<std::string>& programAndArguments,
                         const std::vector<std::string>& variables) const {
    Command command = logged(home_, programAndArguments);
    command.environment.push_back("DISPLAY=" + display_);
    command.environment.insert(command.environment.end(), variables.begin(), variables.end());
    return command;
}

void XServer::run(const std::vector<std::string>& programAndArguments) const {
    const std::string& program = programAndArguments.front();
    if (sallowmere::run(command(programAndArguments)).exitStatus != 0) {
        throw std::runtime_error(program + " failed: " + log());
    }
}

std::string XServer::log() const {
    std::ifstream file(home_ / "log", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void XServer::setLayout(const std::string& layout, const std::string& options) const {
    std::vector<std::string> program{"/usr/bin/setxkbmap",
                                     "-rules",
                                     "evdev",
                                     "-model",
                                     "pc105",
                                     "-layout",
                                     layout,
                                     "-option",
                                     ""};
    if (!options.empty()) {
        program.insert(program.end(), {"-option", options});
    }
    run(program);
}

void XServer::kill() {
    ::kill(process_.pid(), SIGKILL);
    process_.finish();
}

bool hasPrograms(const std::vector<std::string>& paths) {
    return std::all_of(paths.begin(), paths.end(),
                       [](const std::string& path) { return access(path.c_str(), X_OK) == 0; });
}

} // namespace sallowmere
