// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace sallowmere {

/// One running assistant process, identified by `pid`.
struct ClaudeProcess {
    std::int32_t pid = 0;
    /// As `ps` prints it: average over the life of the process, may exceed 100.
    double cpuPercent = 0;
    /// Age for people: "12m", "3h5m", "2d4h".
    QString elapsed;
    std::int64_t elapsedSeconds = 0;
    /// Absent when the kernel will not tell.
    std::optional<QString> cwd;
    /// The terminal application that hosts it; name and pid are both present or both absent.
    std::optional<QString> terminalName;
    std::optional<std::int32_t> terminalPid;

    bool operator==(const ClaudeProcess&) const = default;
};

} // namespace sallowmere
