// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/Terminals.h"

#include "X11/WaitFor.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace sallowmere {

Terminals::Terminals(const XServer& server)
    : server_(server), fifo_(server.home().makeFifo("keys")),
      // Opened for writing too, so that it does not end when the last terminal does.
      records_(open(fifo_.c_str(), O_RDWR | O_CLOEXEC)) {
    if (records_ < 0) {
        throw std::runtime_error("cannot open " + fifo_);
    }
}

Terminals::~Terminals() {
    ::close(records_);
}

Terminal& Terminals::startXterm(const std::string& title, const std::string& recorder,
                                const std::string& directory) {
    Terminal& terminal = add();
    // It need not wait for an answer of the window manager's, which some only give to a change.
    Command command = server_.command({"/usr/bin/xterm", "-xrm", "*waitforwm: false", "-title",
                                       title, "-e", recorder, fifo_, terminal.name});
    if (!directory.empty()) {
        command.directory = directory;
    }
    terminal.process = std::make_unique<ChildProcess>(command);
    terminal.owner = terminal.process->pid();
    waitUntilReady(terminal);
    return terminal;
}

Terminal& Terminals::start(const std::vector<std::string>& command) {
    Terminal& terminal = add();
    std::vector<std::string> whole = command;
    whole.insert(whole.end(), {SALLOWMERE_KEY_RECORDER, fifo_, terminal.name});
    terminal.process = std::make_unique<ChildProcess>(server_.command(whole));
    terminal.owner = terminal.process->pid();
    waitUntilReady(terminal);
    return terminal;
}

Terminal& Terminals::startUrxvt(const std::string& title) {
    const std::string socket = "RXVT_SOCKET=" + server_.home() / "urxvt";
    if (!daemon_) {
        daemon_ =
            std::make_unique<ChildProcess>(server_.command({"/usr/bin/urxvtd", "-o"}, {socket}));
        waitFor("the daemon",
                [this] { return server_.log().find("daemon listening") != std::string::npos; });
    }
    Terminal& terminal = add();
    terminal.owner = daemon_->pid();
    const Command command = server_.command(
        {"/usr/bin/urxvtc", "-title", title, "-e", SALLOWMERE_KEY_RECORDER, fifo_, terminal.name},
        {socket});
    if (run(command).exitStatus != 0) {
        throw std::runtime_error("no urxvt: " + server_.log());
    }
    waitUntilReady(terminal);
    return terminal;
}

Terminal& Terminals::add() {
    Terminal& terminal = terminals_.emplace_back();
    terminal.name = "terminal" + std::to_string(terminals_.size());
    return terminal;
}

void Terminals::waitUntilReady(Terminal& terminal) {
    const std::vector<std::string> record = nextRecord();
    if (record.size() != 4 || record[0] != terminal.name || record[1] != "ready") {
        throw std::runtime_error(terminal.name + " was typed into before it was ready");
    }
    terminal.inside = std::stoi(record[2]);
    terminal.window = static_cast<xcb_window_t>(std::stoul(record[3]));
}

void Terminals::close(Terminal& terminal) {
    // A terminal closes its window when the program in it ends.
    kill(terminal.inside, SIGKILL);
    terminal.isClosed = true;
    if (terminal.process) {
        terminal.process->finish();
    }
}

void Terminals::readOne() {
    const std::vector<std::string> record = nextRecord();
    const auto terminal =
        std::find_if(terminals_.begin(), terminals_.end(),
                     [&](const Terminal& candidate) { return candidate.name == record.at(0); });
    terminal->received += static_cast<char>(std::stoi(record.at(1)));
}

bool Terminals::hasMore() const {
    pollfd readable{records_, POLLIN, 0};
    return poll(&readable, 1, 0) == 1;
}

std::vector<std::string> Terminals::nextRecord() {
    constexpr int deadline = 60'000;
    std::string line;
    char character = 0;
    pollfd readable{records_, POLLIN, 0};
    while (poll(&readable, 1, deadline) == 1 && read(records_, &character, 1) == 1) {
        if (character == '\n') {
            std::istringstream words(line);
            return {std::istream_iterator<std::string>(words), {}};
        }
        line += character;
    }
    throw std::runtime_error("no terminal received anything: " + server_.log());
}

} // namespace sallowmere
