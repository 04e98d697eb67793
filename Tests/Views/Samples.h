// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Sallowmere/Permissions/PermissionRequest.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <chrono>

namespace sallowmere::Samples {

// What the panel shows of a day at work. Each session's id is the name of its function.

Timestamp now();
/// 62 %, 40 % and 84 % of the allowances.
UsageSnapshot usage();

SessionInfo session(const QString& id, const QString& title, SessionStatus status,
                    std::chrono::seconds age);
/// A session that is done, "id" and "title".
SessionInfo titled(const char* id, const char* title, std::chrono::seconds age);
/// In a terminal that can be typed into.
ClaudeProcess process(std::int32_t pid, double cpu);

/// With a question of three options, id "ask".
SessionInfo asking();
/// With a plan, id "plan".
SessionInfo planning();
/// Id "work".
SessionInfo working();
/// Id "idle".
SessionInfo idle();
/// `working` with a log, in a terminal or done.
SessionInfo detailed(bool isRunning);
ClaudeProcess orphan(const char* cwd);
/// Of `working`.
PermissionRequest request();

} // namespace sallowmere::Samples
