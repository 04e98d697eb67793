// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a process listing.
#include "Sallowmere/Processes/ProcessScanner.h"
#include "Support/FakeProcessTable.h"
#include "Support/Input.h"
#include "Support/Lines.h"
#include "Support/Require.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <sstream>

namespace sallowmere::fuzz {
namespace {

using namespace ProcessScanner;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// With no more than 12 digits in a row: an age beyond 64 bits ends the program, and is meant to.
std::string withShortNumbers(const std::string& text) {
    std::string result;
    int digits = 0;
    for (const char c : text) {
        digits = isDigit(c) ? digits + 1 : 0;
        if (digits <= 12) {
            result += c;
        }
    }
    return result;
}

std::vector<std::string> pieces(const std::string& text, char separator) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, separator);) {
        if (!piece.empty()) {
            result.push_back(piece);
        }
    }
    return result;
}

std::string written(const PsRow& row) {
    std::array<char, 64> cpu{};
    const auto end = std::to_chars(cpu.data(), cpu.data() + cpu.size(), row.cpu).ptr;
    return "   " + std::to_string(row.pid) + "  " + std::to_string(row.ppid) + ' '
           + std::to_string(row.uid) + ' ' + std::string(cpu.data(), end) + "  " + row.etime + ' '
           + row.comm;
}

void requireRowRules(const PsRow& row) {
    require(std::isfinite(row.cpu), "a share of the processor is a number");
    require(!row.etime.empty() && row.etime.find(' ') == std::string::npos, "an age is one piece");
    require(!row.comm.empty() && row.comm.front() != ' ' && row.comm.back() != ' '
                && row.comm.find("  ") == std::string::npos,
            "pieces of a name stand one blank apart");
    require(parseRow(written(row)) == row, "a row that is written out reads back the same");
}

void requireLineRules(const std::string& line) {
    const std::optional<PsRow> row = parseRow(line);
    std::string rejoined;
    for (const std::string& piece : pieces(line, ' ')) {
        rejoined += (rejoined.empty() ? "" : " ") + piece;
    }
    require(parseRow(rejoined) == row, "runs of blanks count as one");
    require(!row || pieces(line, ' ').size() >= 6, "a row has six pieces");
    if (row) {
        requireRowRules(*row);
    }
}

std::optional<std::int64_t> number(const std::string& text) {
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    if (text.size() == sign || !std::all_of(text.begin() + (sign ? 1 : 0), text.end(), isDigit)) {
        return std::nullopt;
    }
    return std::stoll(text);
}

std::int64_t secondsOf(const std::string& etime) {
    const std::size_t dash = etime.find('-');
    const bool hasDays = dash != std::string::npos;
    std::vector<std::int64_t> clock;
    for (const std::string& piece : pieces(hasDays ? etime.substr(dash + 1) : etime, ':')) {
        if (const auto value = number(piece)) {
            clock.push_back(*value);
        }
    }
    std::int64_t seconds = 0;
    if (clock.size() <= 3) {
        for (const std::int64_t value : clock) {
            seconds = seconds * 60 + value;
        }
    }
    return seconds + (hasDays ? number(etime.substr(0, dash)).value_or(0) : 0) * 86'400;
}

/// Reads the age for people back. Negative ages have no such rule; no `ps` prints them.
void requirePretty(std::int64_t seconds, const QString& age) {
    if (seconds < 0) {
        return;
    }
    std::int64_t days = 0;
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    std::int64_t value = 0;
    std::int64_t unit = 0;
    for (const char c : age.toStdString()) {
        if (isDigit(c)) {
            value = value * 10 + (c - '0');
            continue;
        }
        (c == 'd' ? days : c == 'h' ? hours : minutes) = value;
        unit = c == 'h' && days > 0 ? 3'600 : 60;
        value = 0;
    }
    const std::int64_t least = days * 86'400 + hours * 3'600 + minutes * 60;
    require(least <= seconds && seconds < least + unit, "an age is rounded down to what is shown");
    require(hours < 24 && minutes < 60, "an age is shown in its largest units");
}

void requireAgeRules(const std::string& etime) {
    const std::int64_t seconds = etimeSeconds(etime);
    require(seconds == secondsOf(etime), "an age adds up");
    requirePretty(seconds, prettyElapsed(etime));
}

/// Row by row from a process upwards.
bool isAncestor(std::int32_t ancestor, std::int32_t pid, const Table& table, int hops) {
    auto row = table.find(pid);
    for (int hop = 0; hop < hops && row != table.end(); ++hop) {
        if (row->second.ppid == ancestor) {
            return true;
        }
        row = table.find(row->second.ppid);
    }
    return false;
}

void requireAncestorRules(const Table& table) {
    constexpr int manyHops = 200;
    for (const auto& [pid, row] : table) {
        const auto far = terminalAncestor(pid, table, manyHops);
        const auto near = terminalAncestor(pid, table, terminalHops);
        require(!near || near == far, "a terminal that is near is the one that is found");
        if (far) {
            require(far->pid >= 2 && isAncestor(far->pid, pid, table, manyHops),
                    "a terminal is an ancestor");
            const auto rules = knownTerminals();
            require(std::any_of(rules.begin(), rules.end(),
                                [&](const TerminalRule& rule) {
                                    return far->name.toStdString() == rule.displayName;
                                }),
                    "a terminal has a known name");
        }
    }
}

/// As listed, and with so few different pids that parents run in circles.
void requireTableRules(const std::vector<PsRow>& rows) {
    Table table;
    Table circles;
    for (const PsRow& row : rows) {
        table.insert_or_assign(row.pid, row);
        PsRow folded = row;
        folded.pid = row.pid & 15;
        folded.ppid = row.ppid & 15;
        circles.insert_or_assign(folded.pid, folded);
    }
    requireAncestorRules(table);
    requireAncestorRules(circles);
}

bool isNamedClaude(std::string path) {
    while (path.ends_with('/')) {
        path.pop_back();
    }
    return path == "claude" || path.ends_with("/claude");
}

void requireScanRules(const FakeProcessTable& processes, const std::vector<PsRow>& rows) {
    const std::vector<ClaudeProcess> found = scan(processes);
    require(found.size() <= rows.size(), "a process has a row");
    for (const ClaudeProcess& process : found) {
        require(process.terminalName.has_value() == process.terminalPid.has_value(),
                "a terminal has a name and a pid");
        require(std::any_of(rows.begin(), rows.end(),
                            [&](const PsRow& row) {
                                return row.pid == process.pid && row.uid == processes.user
                                       && isNamedClaude(row.comm);
                            }),
                "a process is the user's own assistant");
    }
}

void requireListingRules(const std::string& input) {
    FakeProcessTable processes;
    processes.listingText = withShortNumbers(input);
    const std::vector<PsRow> rows = runPs(processes);
    std::vector<PsRow> expected;
    const std::string listing = withBytesReplaced(processes.listingText);
    for (const std::string_view line : nonEmptyLines(listing)) {
        requireLineRules(std::string(line));
        if (const auto row = parseRow(line)) {
            expected.push_back(*row);
        }
    }
    require(rows == expected, "a listing is its lines");
    for (const PsRow& row : rows) {
        requireAgeRules(row.etime);
    }
    requireAgeRules(processes.listingText);
    requireTableRules(rows);
    requireScanRules(processes, rows);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireListingRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
