// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProcessTable.h"
#include "Platform/Timestamp.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Sessions/SessionRecords.h"

#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sallowmere {

/// One line of the process listing.
struct PsRow {
    std::int32_t pid = 0;
    std::int32_t ppid = 0;
    std::uint32_t uid = 0;
    /// Percent.
    double cpu = 0;
    /// Age as printed: [[dd-]hh:]mm:ss.
    std::string etime;
    /// Path or name of the executable; may contain blanks. Linux cuts names to 15 bytes.
    std::string comm;

    bool operator==(const PsRow&) const = default;
};

/// Finds the user's running assistant processes and pairs them with sessions. Stateless; any
/// thread, but listing waits for a child process.
namespace ProcessScanner {

using Table = std::unordered_map<std::int32_t, PsRow>;

/// How many ancestors are asked whether they are a terminal.
inline constexpr int terminalHops = 15;

/// Terminals known on every system, in order: the first needle that a name contains wins.
std::span<const TerminalRule> knownTerminals();

/// All rows that `ps` printed and that parse, in its order.
std::vector<PsRow> runPs(const ProcessTable& processes);

/// Absent for a line of fewer than six pieces or with a malformed number.
std::optional<PsRow> parseRow(std::string_view line);

/// Seconds of an age as `ps` prints it; pieces that are no numbers are passed over. An age beyond
/// 64 bits, which no `ps` prints, ends the program.
std::int64_t etimeSeconds(std::string_view etime);

/// The age for people: "12m", "3h5m", "2d4h".
QString prettyElapsed(std::string_view etime);

struct Terminal {
    QString name;
    std::int32_t pid = 0;

    bool operator==(const Terminal&) const = default;
};

/// The nearest ancestor of `pid` that is a terminal, tried against the rules known everywhere and
/// then against the platform's.
std::optional<Terminal> terminalAncestor(std::int32_t pid, const Table& table, int maxHops,
                                         std::span<const TerminalRule> platformTerminals = {});

/// The user's processes named exactly `claude`, in the order of the listing.
std::vector<ClaudeProcess> scan(const ProcessTable& processes);

struct Matches {
    /// By `SessionInfo::id`.
    QHash<QString, ClaudeProcess> bySessionId;
    /// Processes with a working directory that belong to no session.
    std::vector<ClaudeProcess> orphans;
};

/// Gives each session, in order, the process in its working directory whose start is nearest to
/// the session's; each process goes to one session.
Matches match(std::span<const ClaudeProcess> processes, std::span<const SessionInfo> sessions,
              Timestamp now);

/// Gives each session its matched process; one without a match has none from then on.
void attach(const Matches& matches, std::vector<SessionInfo>& sessions);

} // namespace ProcessScanner

} // namespace sallowmere
