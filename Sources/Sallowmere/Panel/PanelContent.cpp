// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelContent.h"

#include <algorithm>
#include <tuple>

namespace sallowmere::PanelContent {

namespace {

std::size_t countOf(const std::vector<SessionInfo>& sessions, SessionStatus status) {
    return static_cast<std::size_t>(
        std::count_if(sessions.begin(), sessions.end(),
                      [=](const SessionInfo& session) { return session.status == status; }));
}

template <typename Predicate>
std::optional<SessionInfo> firstWith(const std::vector<SessionInfo>& sessions,
                                     Predicate predicate) {
    const auto found = std::find_if(sessions.begin(), sessions.end(), predicate);
    return found == sessions.end() ? std::nullopt : std::optional(*found);
}

} // namespace

std::size_t workingCount(const std::vector<SessionInfo>& sessions) {
    return countOf(sessions, SessionStatus::working);
}

std::size_t waitingCount(const std::vector<SessionInfo>& sessions,
                         const std::vector<PermissionRequest>& requests) {
    return countOf(sessions, SessionStatus::waiting) + requests.size();
}

std::vector<SessionInfo> orderedSessions(std::vector<SessionInfo> sessions) {
    const auto key = [](const SessionInfo& session) {
        return std::tuple(session.status == SessionStatus::waiting, session.lastActivityAt);
    };
    std::stable_sort(
        sessions.begin(), sessions.end(),
        [&](const SessionInfo& one, const SessionInfo& other) { return key(one) > key(other); });
    return sessions;
}

std::vector<SessionInfo> completedSessions(const std::vector<SessionInfo>& sessions,
                                           const AppState::Completions& completions) {
    std::vector<SessionInfo> completed;
    std::copy_if(
        sessions.begin(), sessions.end(), std::back_inserter(completed),
        [&](const SessionInfo& session) { return completions.contains(session.sessionId); });
    std::stable_sort(completed.begin(), completed.end(),
                     [&](const SessionInfo& one, const SessionInfo& other) {
                         return completions.value(one.sessionId, distantPast)
                                > completions.value(other.sessionId, distantPast);
                     });
    return completed;
}

std::vector<PermissionRequest> approvals(const std::vector<PermissionRequest>& requests) {
    const auto count = std::min(requests.size(), mostApproveCards);
    return {requests.begin(), requests.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::optional<SessionInfo> asking(const std::vector<SessionInfo>& ordered) {
    return firstWith(ordered, [](const SessionInfo& session) { return session.ask.has_value(); });
}

std::optional<SessionInfo> planning(const std::vector<SessionInfo>& ordered) {
    return firstWith(ordered, [](const SessionInfo& session) { return session.plan.has_value(); });
}

bool answersByKeystroke(const SessionInfo& session, bool keystrokeAnswers, bool isTrusted) {
    return keystrokeAnswers && session.process && session.process->terminalPid && isTrusted;
}

QString askHint(bool answersByKeystroke) {
    return answersByKeystroke
               ? QStringLiteral("Click an option to answer in the terminal")
               : QStringLiteral(
                   "Click an option to jump — grant Accessibility to answer from here");
}

} // namespace sallowmere::PanelContent
