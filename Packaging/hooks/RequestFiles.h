// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "HookEvent.h"
#include "Platform/FileSystem.h"
#include "Platform/Timestamp.h"

#include <string>

namespace sallowmere {

/// Keeps the notification directory as the assistant's hooks call for, beside others that do so at
/// the same time.
///
/// A request is a file `SESSION-UUID.json` as `NotificationWatcher` reads them. A marker
/// `.asked-SESSION` says that the session asks something that is no request; it keeps the reminder
/// that follows from becoming one. SESSION is the session's id, or a hash of it unless it is plain.
/// Files appear whole or not at all; until then they are called `.new-` and something.
///
/// Whose request a file is decides what is in it, not its name: a session's settled requests go
/// whoever wrote them.
namespace RequestFiles {

/// Seconds during which a marker counts. Reminders come some six seconds after the question, later
/// on a busy machine; a marker may outlive its question, which ends without an event when its
/// user refuses it, and must not outlast it for long.
inline constexpr double markerCounts = 60;

/// Does what the event calls for in the home directory's notification directory, which is made when
/// something is to be written; both are for their user alone. Whatever fails leaves things as they
/// were.
void apply(const HookEvent& event, const FileSystem& files, const std::string& home, Timestamp now);

/// What a request's file holds.
std::string content(const HookEvent& event);

/// A session's id as part of a file's name: letters, digits, hyphens and underscores, 1 to 64.
std::string nameOf(const QString& sessionId);

} // namespace RequestFiles

} // namespace sallowmere
