// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <string>
#include <vector>

namespace sallowmere {

/// An X server without a screen, for one test, and a home for the programs that use it.
class XServer {
public:
    /// Started with these further arguments. Throws when it does not start.
    explicit XServer(const std::vector<std::string>& arguments = {});
    /// Ends it in good order, so that its number is free again.
    ~XServer();

    /// Such as ":7".
    const std::string& display() const { return display_; }
    const TemporaryHome& home() const { return home_; }

    /// How to run a program that uses this server. What it complains about goes into the log.
    Command command(const std::vector<std::string>& programAndArguments,
                    const std::vector<std::string>& variables = {}) const;
    /// Runs it to its end, which must be a good one.
    void run(const std::vector<std::string>& programAndArguments) const;
    /// What the server and the programs on it complained about.
    std::string log() const;

    /// Gives the keyboard layouts, groups separated by commas, and options.
    void setLayout(const std::string& layout, const std::string& options = "") const;

    /// Ends it as a crash would.
    void kill();

private:
    TemporaryHome home_;
    ChildProcess process_;
    std::string display_;
};

/// Whether all of these programs are installed.
bool hasPrograms(const std::vector<std::string>& paths);

} // namespace sallowmere
