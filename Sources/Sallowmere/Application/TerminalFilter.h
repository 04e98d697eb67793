// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Sessions/SessionRecords.h"

#include <QStringList>

#include <vector>

namespace sallowmere {

/// Keeps what runs in the terminals that the user wants to see. With no terminal named, all of it.
///
/// A terminal matches when its lower-cased name contains one of the user's entries, which is why
/// an entry with a capital letter matches nothing. What has no terminal to go by is treated
/// unequally: a session stays while it is recent, an orphan never does.
namespace TerminalFilter {

/// Seconds since its last activity for which a session without a terminal stays.
inline constexpr double recentTime = 1'800;

/// Whether a terminal of that name is wanted; `terminals` must not be empty.
bool passes(const QString& terminalName, const QStringList& terminals);

void keepWanted(std::vector<SessionInfo>& sessions, const QStringList& terminals, Timestamp now);
void keepWanted(std::vector<ClaudeProcess>& orphans, const QStringList& terminals);

} // namespace TerminalFilter

} // namespace sallowmere
