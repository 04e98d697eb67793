// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/TemporaryHome.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace sallowmere {

/// How an assistant was called, as it saw it itself.
struct AssistantCall {
    /// The first is the name that it was called by.
    std::vector<std::string> arguments;
    std::vector<std::string> environment;
    std::string directory;
    /// What its open descriptors lead to.
    std::map<int, std::string> descriptors;
    pid_t pid = 0;
    pid_t terminalSession = 0;
    /// As sets of bits, signal 1 being the lowest.
    unsigned long long blockedSignals = 0;
    unsigned long long ignoredSignals = 0;
};

/// A home directory with an assistant in the first of the usual places, which notes how it was
/// called and then does what the test says.
class ScriptedAssistant {
public:
    /// `homeName` is the last component of the home directory's path.
    explicit ScriptedAssistant(const std::string& homeName = "home");

    const TemporaryHome& home() const { return home_; }
    /// The assistant's path. It is a link.
    const std::string& path() const { return path_; }

    /// The shell commands that it becomes for a session. Without any it exits with status 0.
    void does(std::string_view sessionId, std::string_view commands) const;

    bool wasCalled(std::string_view sessionId) const;
    /// It must have been called for that session.
    AssistantCall call(std::string_view sessionId) const;

private:
    std::string note(std::string_view sessionId, std::string_view what) const;

    TemporaryHome home_;
    std::string path_;
};

/// The whole content of a file; empty when there is none.
std::string contentOf(const std::string& path);

/// Whether a process lives; one that has ended but was not asked for its end does not.
bool isAlive(pid_t pid);

} // namespace sallowmere
