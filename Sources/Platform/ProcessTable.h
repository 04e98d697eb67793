// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace sallowmere {

/// How the name of a process identifies a terminal application.
struct TerminalRule {
    enum class Match { substring, exact };

    /// Compared with the lower-cased last path component of the process's `comm`.
    std::string_view needle;
    /// Shown to people.
    std::string_view displayName;
    Match match = Match::substring;
};

/// The processes that run on this machine. Nothing throws; may be used from any one thread.
class ProcessTable {
public:
    ProcessTable() = default;
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;
    virtual ~ProcessTable() = default;

    /// What `/bin/ps -axo pid=,ppid=,uid=,pcpu=,etime=,comm=` prints, as it comes. Empty when it
    /// cannot be started; how it ends does not matter. Waits until it has ended, but not for ever:
    /// one that does not end within some seconds is killed and counts as one that could not be
    /// started, whatever it printed until then.
    virtual std::string listing() const = 0;

    /// Working directory of a process as the kernel tells it; absent when it does not (another
    /// user's process, a zombie, one that has ended).
    virtual std::optional<std::string> workingDirectory(std::int32_t pid) const = 0;

    /// The real user id of this program.
    virtual std::uint32_t userId() const = 0;

    /// Terminals that only this platform has, tried in order after the ones known everywhere.
    virtual std::span<const TerminalRule> terminals() const = 0;
};

} // namespace sallowmere
