// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProcessTable.h"

namespace sallowmere {

/// The processes of this machine, by `ps` and the proc file system.
class LinuxProcessTable : public ProcessTable {
public:
    /// Seconds that `ps` may take; it takes some milliseconds.
    static constexpr double longestRun = 5.0;

    /// `ps` is the full path of the program that lists the processes, `patience` the seconds that
    /// it gets.
    explicit LinuxProcessTable(std::string ps = "/bin/ps", double patience = longestRun);

    std::string listing() const override;
    /// The link `/proc/PID/cwd` as it reads, also when that directory was removed or moved.
    std::optional<std::string> workingDirectory(std::int32_t pid) const override;
    std::uint32_t userId() const override;
    std::span<const TerminalRule> terminals() const override;

private:
    std::string ps_;
    double patience_;
};

} // namespace sallowmere
