// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// The program as it is installed from this build, below a directory of the test's own that stands
/// for the root, as by root's usual mask. What the build directory knew of an earlier installation
/// it knows again in the end.
class Installation {
public:
    static constexpr std::string_view prefix = "usr/local";

    /// Throws when it fails.
    Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
    ~Installation();

    /// Stands for the root directory.
    const TemporaryHome& root() const { return root_; }

    /// The full path of what is installed under `relative` to the prefix.
    std::string operator/(std::string_view relative) const;

    /// What lies below the root, sorted: `MODE PATH` for each file, `PATH -> TARGET` for a link.
    /// The mode is octal, the path relative to the root.
    std::vector<std::string> files() const;

    /// The same for directories.
    std::vector<std::string> directories() const;

    /// What the target does that takes it all away.
    Outcome uninstall() const;

private:
    TemporaryHome root_{"root"};
    std::optional<std::string> formerManifest_;
};

/// Runs one of the machine's programs. Fails the test, in words, when there is none of that name.
Outcome runProgram(const std::string& name, const std::vector<std::string>& arguments);

/// What a file holds; fails the test when there is none.
std::string contentOf(const std::string& path);

} // namespace sallowmere
