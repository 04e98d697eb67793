// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Permissions/PermissionRequest.h"
#include "Sallowmere/Sessions/SessionRecords.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace sallowmere {

/// What the panel shows of the model, and in which order.
namespace PanelContent {

/// More permission requests than these wait until one of them is answered.
inline constexpr std::size_t mostApproveCards = 3;

std::size_t workingCount(const std::vector<SessionInfo>& sessions);
/// Sessions and permission requests that wait for the user.
std::size_t waitingCount(const std::vector<SessionInfo>& sessions,
                         const std::vector<PermissionRequest>& requests);

/// The waiting ones first, the latest first among those and among the others.
std::vector<SessionInfo> orderedSessions(std::vector<SessionInfo> sessions);

/// Those with a recent completion, the latest completion first.
std::vector<SessionInfo> completedSessions(const std::vector<SessionInfo>& sessions,
                                           const AppState::Completions& completions);

/// The requests with a card, in their order.
std::vector<PermissionRequest> approvals(const std::vector<PermissionRequest>& requests);

/// The session whose question, or plan, has the card: the first in the order shown.
std::optional<SessionInfo> asking(const std::vector<SessionInfo>& ordered);
std::optional<SessionInfo> planning(const std::vector<SessionInfo>& ordered);

/// Whether a click on an option types it into the session's terminal.
bool answersByKeystroke(const SessionInfo& session, bool keystrokeAnswers, bool isTrusted);

/// Below the options of a question.
QString askHint(bool answersByKeystroke);

} // namespace PanelContent

} // namespace sallowmere
