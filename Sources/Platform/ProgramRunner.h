// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// A program to start. All texts are bytes as the kernel has them.
struct Program {
    /// Full path of the executable; no search path is consulted.
    std::string path;
    /// What follows the name that it is called by, which is its path.
    std::vector<std::string> arguments;
    /// NAME=VALUE each; nothing else is inherited.
    std::vector<std::string> environment;
    /// A full path; absent for the directory that this program runs in.
    std::optional<std::string> directory;
    /// How many bytes from the end of its standard error are kept.
    std::size_t keptErrorBytes = 0;
};

/// How a program ended.
struct ProgramEnd {
    /// The exit status, or the number of the signal that ended it; -1 when something else in this
    /// program was told instead.
    int status = 0;
    /// The end of what it wrote to its standard error.
    std::string errors;
};

/// Starts programs that live a life of their own: they read nothing, what they print is thrown
/// away, and they go on when this program or the terminal that it was started from ends. From then
/// on nobody reads their standard error, and writing to it fails but does not end them.
///
/// Main thread, with an event loop; nothing throws.
class ProgramRunner {
public:
    using Ended = std::function<void(ProgramEnd end)>;

    ProgramRunner() = default;
    ProgramRunner(const ProgramRunner&) = delete;
    ProgramRunner& operator=(const ProgramRunner&) = delete;
    /// Lets go of what runs: it is not told of any more.
    virtual ~ProgramRunner() = default;

    /// Returns what prevented the start, in the system's words, or nothing. When it was started
    /// `ended` is called once, from the event loop, as soon as it has ended, also when something
    /// that it started lives on.
    virtual std::optional<std::string> start(const Program& program, Ended ended) = 0;

    /// What this program was started with, and what was set since: NAME=VALUE each.
    virtual std::vector<std::string> environment() const = 0;
};

} // namespace sallowmere
