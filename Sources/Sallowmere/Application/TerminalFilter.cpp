// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Application/TerminalFilter.h"

#include <algorithm>
#include <optional>

namespace sallowmere::TerminalFilter {

namespace {

std::optional<QString> terminalName(const SessionInfo& session) {
    return session.process ? session.process->terminalName : std::nullopt;
}

} // namespace

bool passes(const QString& terminalName, const QStringList& terminals) {
    const QString name = terminalName.toLower();
    return name == QStringLiteral("askrow")
           || std::any_of(terminals.begin(), terminals.end(),
                          [&](const QString& entry) { return name.contains(entry); });
}

void keepWanted(std::vector<SessionInfo>& sessions, const QStringList& terminals, Timestamp now) {
    if (terminals.isEmpty()) {
        return;
    }
    std::erase_if(sessions, [&](const SessionInfo& session) {
        const std::optional<QString> name = terminalName(session);
        return name ? !passes(*name, terminals)
                    : secondsBetween(session.lastActivityAt, now) >= recentTime;
    });
}

void keepWanted(std::vector<ClaudeProcess>& orphans, const QStringList& terminals) {
    if (terminals.isEmpty()) {
        return;
    }
    std::erase_if(orphans, [&](const ClaudeProcess& orphan) {
        return !orphan.terminalName || !passes(*orphan.terminalName, terminals);
    });
}

} // namespace sallowmere::TerminalFilter
