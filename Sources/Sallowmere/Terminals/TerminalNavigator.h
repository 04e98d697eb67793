// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/Keystrokes.h"
#include "Sallowmere/Sessions/SessionRecords.h"

namespace sallowmere {

/// Brings the terminal of a session to the front. Main thread.
namespace TerminalNavigator {

/// Activates the terminal that hosts the session's process and raises the first of its windows
/// whose title holds the session's working directory, or that directory's name, in any case of
/// letters. Windows are left alone without the right to arrange them.
/// False when the session has no process in a terminal or that terminal has no windows (any more);
/// nothing has happened then.
bool jump(const SessionInfo& session, Applications& applications, Keystrokes& keystrokes);

} // namespace TerminalNavigator

} // namespace sallowmere
