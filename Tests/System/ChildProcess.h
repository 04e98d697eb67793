// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace sallowmere {

struct Command {
    std::string program;
    /// With the name that the program is called by in front.
    std::vector<std::string> arguments;
    /// NAME=VALUE each; nothing is inherited.
    std::vector<std::string> environment;
    /// Where it runs; empty for the test's own working directory.
    std::string directory;
};

struct Outcome {
    /// Absent when a signal ended it.
    std::optional<int> exitStatus;
    std::string output;
    std::string errors;
};

/// Runs a program with no input to its end.
Outcome run(const Command& command);

/// The same with a descriptor as its standard input, which stays the caller's.
Outcome run(const Command& command, int input);

/// A program that runs beside the test, in a process group of its own. When destroyed it is ended
/// with everything that it started.
class ChildProcess {
public:
    explicit ChildProcess(const Command& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    pid_t pid() const { return pid_; }

    /// Waits for the next line of its output; what there is at the end of the output.
    std::string readLine();

    /// Ends its input and waits until it has ended; it stays a zombie.
    void finish();

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
};

} // namespace sallowmere
