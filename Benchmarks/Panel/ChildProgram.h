// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

namespace sallowmere {

/// A program that runs beside this one, until the object goes.
class ChildProgram {
public:
    using Moment = std::chrono::steady_clock::time_point;

    struct Command {
        std::vector<std::string> arguments;
        std::vector<std::string> environment;
        /// What its standard output and its complaints are appended to.
        std::string log;
        /// Descriptor that it finds under the same number; -1 for none.
        int inherited = -1;
    };

    /// Throws when it cannot be started.
    explicit ChildProgram(const Command& command);
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;
    /// Asks it to end, and kills it if it has not ended some seconds later.
    ~ChildProgram();

    pid_t pid() const { return pid_; }
    /// Just before it was started.
    Moment startedAt() const { return startedAt_; }

private:
    bool hasEnded(std::chrono::milliseconds patience) const;

    Moment startedAt_ = std::chrono::steady_clock::now();
    pid_t pid_;
};

} // namespace sallowmere
