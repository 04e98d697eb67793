// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

/// What the kernel tells about a running process. All throw when it has ended.
namespace sallowmere::ProcessReadings {

/// Milliseconds since the process began.
struct ProcessorTime {
    double own = 0;
    /// Of its children that have ended.
    double children = 0;
};

/// MiB.
struct Memory {
    double resident = 0;
    /// With what others map too, divided by their number.
    double proportional = 0;
    double privateDirty = 0;
};

/// A file, or another kind of memory, that a process maps.
struct Mapping {
    std::string name;
    Memory memory;
};

ProcessorTime processorTime(pid_t process);
Memory memory(pid_t process);

/// Each name once, the largest resident part first.
std::vector<Mapping> mappings(pid_t process);

/// How often each of its threads, by their numbers, has waited for something since it began.
using Waits = std::map<std::string, long>;
Waits waits(pid_t process);

/// Of the threads that are still there.
long waitsBetween(const Waits& before, const Waits& after);

} // namespace sallowmere::ProcessReadings
