// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace sallowmere {

/// Runs commands in a directory; returns what they print, absent when they fail. Not with Qt's own
/// means of starting programs: the child shares the memory for a moment, and race detectors lose
/// track of the parent.
inline std::optional<std::string> runInShell(const std::string& commands,
                                             const std::string& directory) {
    const char* path = std::getenv("PATH");
    Outcome outcome = run({"/bin/sh",
                           {"sh", "-c", commands},
                           {std::string("PATH=") + (path != nullptr ? path : "/usr/bin:/bin")},
                           directory});
    return outcome.exitStatus == 0 ? std::optional(std::move(outcome.output)) : std::nullopt;
}

} // namespace sallowmere
