// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>

#include <string>

namespace sallowmere {

/// Makes sure that one panel shows a home directory: two would answer to the same files.
class RunningInstance {
public:
    /// Creates `~/.config/sallowmere` where it is missing.
    explicit RunningInstance(const std::string& home);

    /// Whether another program with a panel for this home directory runs. Where nothing can be
    /// written nobody knows, and none counts as running.
    bool isAnother() const { return isAnother_; }

    /// Ends being the one.
    void release() { lock_.unlock(); }

private:
    QLockFile lock_;
    bool isAnother_ = false;
};

} // namespace sallowmere
