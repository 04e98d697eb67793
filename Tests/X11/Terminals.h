// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XServer.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>
#include <xcb/xcb.h>

namespace sallowmere {

/// A terminal's window, in which a program records what is typed.
struct Terminal {
    std::string name;
    xcb_window_t window = XCB_NONE;
    /// The process that the window belongs to.
    pid_t owner = 0;
    /// The process that runs in it.
    pid_t inside = 0;
    /// What has been typed so far.
    std::string received;
    bool isClosed = false;
    /// Absent when one process has several windows.
    std::unique_ptr<ChildProcess> process;
};

/// Terminals on an X server. Everything returned lives as long as this.
class Terminals {
public:
    explicit Terminals(const XServer& server);
    ~Terminals();

    /// All wait until the program in it runs. `recorder` is the path of a link to it, by whose
    /// name it goes then, and `directory` where it runs.
    Terminal& startXterm(const std::string& title,
                         const std::string& recorder = SALLOWMERE_KEY_RECORDER,
                         const std::string& directory = {});
    /// Any terminal, by a command that lacks only the program in it.
    Terminal& start(const std::vector<std::string>& command);
    /// All of these belong to one process, a daemon.
    Terminal& startUrxvt(const std::string& title);

    /// Ends it with its window.
    static void close(Terminal& terminal);

    /// Waits until one more byte was typed into some terminal.
    void readOne();
    /// Whether one was that has not been read yet.
    bool hasMore() const;

    std::list<Terminal>& all() { return terminals_; }

private:
    Terminal& add();
    void waitUntilReady(Terminal& terminal);
    std::vector<std::string> nextRecord();

    const XServer& server_;
    std::string fifo_;
    int records_;
    std::list<Terminal> terminals_;
    std::unique_ptr<ChildProcess> daemon_;
};

} // namespace sallowmere
