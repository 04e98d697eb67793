// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Text/Split.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace sallowmere::ProcessScanner {

namespace {

constexpr std::size_t psColumns = 6;
constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 3'600;
constexpr std::int64_t day = 86'400;

/// The whole text as a decimal number; absent when it is anything else or out of range.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::string joined(std::span<const std::string_view> pieces) {
    std::string text(pieces.front());
    for (const std::string_view piece : pieces.subspan(1)) {
        text.append(" ").append(piece);
    }
    return text;
}

/// `sum` and so many spans of `seconds`.
std::int64_t plusSpans(std::int64_t sum, std::int64_t count, std::int64_t seconds) {
    std::int64_t product = 0;
    std::int64_t result = 0;
    if (__builtin_mul_overflow(count, seconds, &product)
        || __builtin_add_overflow(sum, product, &result)) {
        std::abort();
    }
    return result;
}

std::int64_t clockSeconds(std::string_view clock) {
    std::vector<std::int64_t> numbers;
    for (const std::string_view piece : splitPieces(clock, ':')) {
        if (const auto number = parseNumber<std::int64_t>(piece)) {
            numbers.push_back(*number);
        }
    }
    if (numbers.empty() || numbers.size() > 3) {
        return 0;
    }
    std::int64_t seconds = 0;
    std::int64_t unit = 1;
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
        seconds = plusSpans(seconds, *number, unit);
        unit *= 60;
    }
    return seconds;
}

bool matches(const TerminalRule& rule, QStringView name) {
    const QLatin1StringView needle(rule.needle.data(), static_cast<qsizetype>(rule.needle.size()));
    return rule.match == TerminalRule::Match::exact ? name == needle : name.contains(needle);
}

const TerminalRule* ruleFor(const PsRow& row, std::span<const TerminalRule> platformTerminals) {
    const QString name = decodeUtf8(lastPathComponent(row.comm)).toLower();
    for (const auto rules : {knownTerminals(), platformTerminals}) {
        const auto found = std::find_if(rules.begin(), rules.end(),
                                        [&](const TerminalRule& r) { return matches(r, name); });
        if (found != rules.end()) {
            return &*found;
        }
    }
    return nullptr;
}

bool isAssistant(const PsRow& row, std::uint32_t userId) {
    // Copies inside an application bundle belong to that application.
    return row.uid == userId && row.comm.find(".app/") == std::string::npos
           && lastPathComponent(row.comm) == "claude";
}

ClaudeProcess describe(const PsRow& row, const Table& table, const ProcessTable& processes) {
    ClaudeProcess process;
    process.pid = row.pid;
    process.cpuPercent = row.cpu;
    process.elapsed = prettyElapsed(row.etime);
    process.elapsedSeconds = etimeSeconds(row.etime);
    if (const auto cwd = processes.workingDirectory(row.pid)) {
        process.cwd = decodeUtf8(*cwd);
    }
    if (const auto terminal =
            terminalAncestor(row.pid, table, terminalHops, processes.terminals())) {
        process.terminalName = terminal->name;
        process.terminalPid = terminal->pid;
    }
    return process;
}

using Waiting = QHash<QString, std::vector<const ClaudeProcess*>>;

Waiting byDirectory(std::span<const ClaudeProcess> processes) {
    Waiting waiting;
    for (const ClaudeProcess& process : processes) {
        if (process.cwd) {
            waiting[*process.cwd].push_back(&process);
        }
    }
    return waiting;
}

/// Takes out the process whose start is nearest to the session's; the earlier one of equals.
const ClaudeProcess* takeNearest(std::vector<const ClaudeProcess*>& waiting,
                                 const SessionInfo& session, Timestamp now) {
    const double sessionAge = secondsBetween(session.startedAt, now);
    const auto distance = [=](const ClaudeProcess* process) {
        return std::abs(static_cast<double>(process->elapsedSeconds) - sessionAge);
    };
    const auto nearest =
        std::min_element(waiting.begin(), waiting.end(), [&](const auto* left, const auto* right) {
            return distance(left) < distance(right);
        });
    const ClaudeProcess* chosen = *nearest;
    waiting.erase(nearest);
    return chosen;
}

} // namespace

std::vector<PsRow> runPs(const ProcessTable& processes) {
    const std::string listing = decodeUtf8(processes.listing()).toStdString();
    std::vector<PsRow> rows;
    for (const std::string_view line : splitPieces(listing, '\n')) {
        if (std::optional<PsRow> row = parseRow(line)) {
            rows.push_back(*std::move(row));
        }
    }
    return rows;
}

std::optional<PsRow> parseRow(std::string_view line) {
    const std::vector<std::string_view> pieces = splitPieces(line, ' ');
    if (pieces.size() < psColumns) {
        return std::nullopt;
    }
    const auto pid = parseNumber<std::int32_t>(pieces[0]);
    const auto ppid = parseNumber<std::int32_t>(pieces[1]);
    const auto uid = parseNumber<std::uint32_t>(pieces[2]);
    const auto cpu = parseNumber<double>(pieces[3]);
    if (!pid || !ppid || !uid || !cpu || !std::isfinite(*cpu)) {
        return std::nullopt;
    }
    return PsRow{*pid,
                 *ppid,
                 *uid,
                 *cpu,
                 std::string(pieces[4]),
                 joined(std::span(pieces).subspan(psColumns - 1))};
}

std::int64_t etimeSeconds(std::string_view etime) {
    const std::size_t dash = etime.find('-');
    if (dash == std::string_view::npos) {
        return clockSeconds(etime);
    }
    const std::int64_t days = parseNumber<std::int64_t>(etime.substr(0, dash)).value_or(0);
    return plusSpans(clockSeconds(etime.substr(dash + 1)), days, day);
}

QString prettyElapsed(std::string_view etime) {
    const std::int64_t seconds = etimeSeconds(etime);
    if (seconds < hour) {
        return QStringLiteral("%1m").arg(seconds / minute);
    }
    if (seconds < day) {
        return QStringLiteral("%1h%2m").arg(seconds / hour).arg(seconds % hour / minute);
    }
    return QStringLiteral("%1d%2h").arg(seconds / day).arg(seconds % day / hour);
}

std::optional<Terminal> terminalAncestor(std::int32_t pid, const Table& table, int maxHops,
                                         std::span<const TerminalRule> platformTerminals) {
    const auto own = table.find(pid);
    std::int32_t current = own == table.end() ? 0 : own->second.ppid;
    for (int hop = 0; hop < maxHops; ++hop) {
        const auto row = table.find(current);
        if (current < 2 || row == table.end()) {
            return std::nullopt;
        }
        if (const TerminalRule* rule = ruleFor(row->second, platformTerminals)) {
            return Terminal{decodeUtf8(rule->displayName), current};
        }
        current = row->second.ppid;
    }
    return std::nullopt;
}

std::vector<ClaudeProcess> scan(const ProcessTable& processes) {
    const std::vector<PsRow> rows = runPs(processes);
    Table table;
    for (const PsRow& row : rows) {
        table.insert_or_assign(row.pid, row);
    }
    std::vector<ClaudeProcess> found;
    for (const PsRow& row : rows) {
        if (isAssistant(row, processes.userId())) {
            found.push_back(describe(row, table, processes));
        }
    }
    return found;
}

Matches match(std::span<const ClaudeProcess> processes, std::span<const SessionInfo> sessions,
              Timestamp now) {
    Matches matches;
    Waiting waiting = byDirectory(processes);
    std::unordered_set<std::int32_t> chosenPids;
    for (const SessionInfo& session : sessions) {
        const auto here = session.cwd ? waiting.find(*session.cwd) : waiting.end();
        if (here == waiting.end() || here->empty()) {
            continue;
        }
        const ClaudeProcess* chosen = takeNearest(*here, session, now);
        chosenPids.insert(chosen->pid);
        matches.bySessionId.insert(session.id, *chosen);
    }
    std::copy_if(processes.begin(), processes.end(), std::back_inserter(matches.orphans),
                 [&](const ClaudeProcess& process) {
                     return process.cwd && !chosenPids.contains(process.pid);
                 });
    return matches;
}

void attach(const Matches& matches, std::vector<SessionInfo>& sessions) {
    for (SessionInfo& session : sessions) {
        const auto process = matches.bySessionId.constFind(session.id);
        session.process =
            process == matches.bySessionId.constEnd() ? std::nullopt : std::optional(*process);
    }
}

} // namespace sallowmere::ProcessScanner
