// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace sallowmere {

/// Switches the hook on and off in the assistant's settings, `.claude/settings.json` of a home
/// directory. What it says is for people, a line each. What cannot be done throws `FileError`, and
/// then nothing was changed.
///
/// A copy of the settings as they were before the hook was added lies beside them until the hook is
/// removed, `settings.json.sallowmere-backup`; for settings that were not there a word of that,
/// `settings.json.sallowmere-made`. Both are for their user alone.
class HookSwitch {
public:
    explicit HookSwitch(const std::string& home);

    std::vector<std::string> install() const;
    std::vector<std::string> remove() const;

    struct Status {
        bool isInstalled = false;
        std::vector<std::string> lines;
    };
    Status status() const;

private:
    std::string directory_;
    std::string path_;
};

} // namespace sallowmere
