// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/stat.h>

namespace sallowmere {

/// A home directory in which the hook is switched on and off.
class SwitchHome : public testing::Test {
protected:
    /// The program in an environment of HOME and a search path, with its arguments.
    Command command(const std::vector<std::string>& arguments) const;
    Outcome call(const std::string& argument) const { return run(command({argument})); }

    /// Calls it and expects it to succeed without a complaint, or to refuse without a change.
    std::string done(const std::string& argument) const;
    std::string refused(const std::string& argument) const;

    /// Writes the assistant's settings, of mode 0644; returns their path.
    std::string write(const std::string& content) const;
    std::string settings() const { return home / ".claude/settings.json"; }
    std::string backup() const { return settings() + ".sallowmere-backup"; }
    std::string made() const { return settings() + ".sallowmere-made"; }

    /// Everything below the home directory: its path, for a file its mode and content, for a link
    /// what it leads to.
    std::vector<std::string> everything() const;

    static std::string contentOf(const std::string& path);
    static struct stat statusOf(const std::string& path);
    static std::string modeOf(const std::string& path);

    TemporaryHome home;
};

/// What the settings look like in which there is nothing but the hook.
std::string hookSnippet();

} // namespace sallowmere
