// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

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

/// How often its threads have waited for something since they began.
long waits(pid_t process);

} // namespace sallowmere::ProcessReadings
