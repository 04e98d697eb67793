// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Permissions/PermissionRequest.h"
#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QJsonObject>

#include <string>
#include <vector>

namespace sallowmere {

/// The hook in an environment of HOME and a search path.
Command hookCommand(const std::string& home);

/// Runs a command with this text as its input, which is there before it starts: the hook waits a
/// second for it, which is not always enough for another thread to write it. It comes from a
/// socket, as the assistant gives it, or from a file when it is long.
Outcome runWithInput(const Command& command, const std::string& input);

/// Fails the test unless a program succeeded and said nothing.
void expectSilence(const Outcome& outcome);

/// A home directory in which the assistant calls its hook.
class HookHome : public testing::Test {
protected:
    /// Runs the hook and expects it to be silent.
    void call(const QJsonObject& event) const;
    void callWith(const std::string& input) const;

    std::string directory() const;
    std::string in(const std::string& name) const { return directory() + '/' + name; }
    std::string write(const std::string& name, const std::string& content) const;
    /// Dates a file of the notification directory so many seconds back, or ahead.
    void setAge(const std::string& name, std::int64_t seconds) const;

    /// What the program would show.
    std::vector<PermissionRequest> pending() const;
    /// Their messages, sorted, each after its session: "SESSION: MESSAGE".
    std::vector<std::string> shown() const;

    /// The names in the notification directory, sorted.
    std::vector<std::string> names() const;
    /// The path of everything below the home directory, relative to it, directories too.
    std::vector<std::string> everything() const;

    TemporaryHome home;
    LinuxFileSystem files;
};

} // namespace sallowmere
