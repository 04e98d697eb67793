// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Application/AppState.h"

#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Sallowmere/Terminals/AnswerInjector.h"
#include "Sallowmere/Terminals/TerminalNavigator.h"

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace sallowmere {

namespace {

constexpr float cueVolume = 0.35F;

using SessionIndex = QHash<QString, const SessionInfo*>;

SessionIndex indexById(const std::vector<SessionInfo>& sessions) {
    SessionIndex index;
    for (const SessionInfo& session : sessions) {
        if (index.contains(session.id)) {
            std::fputs("sallowmere: two sessions share an id\n", stderr);
            std::abort();
        }
        index.insert(session.id, &session);
    }
    return index;
}

template <typename Record>
auto withId(const std::vector<Record>& records, const QString& id) {
    return std::find_if(records.begin(), records.end(),
                        [&](const Record& record) { return record.id == id; });
}

} // namespace

AppState::AppState(Settings settings, AppServices services)
    : settings_(std::move(settings)), services_(std::move(services)) {}

template <typename Value>
void AppState::assign(Value& property, Value value, void (AppState::*stream)(const Value&)) {
    emit willChange();
    emit(this->*stream)(value);
    property = std::move(value);
}

void AppState::setUsage(UsageSnapshot usage) {
    assign(usage_, std::move(usage), &AppState::usageWillChange);
}

void AppState::setContentHeight(double height) {
    assign(contentHeight_, height, &AppState::contentHeightWillChange);
}

void AppState::setListContentHeight(double height) {
    assign(listContentHeight_, height, &AppState::listContentHeightWillChange);
}

void AppState::setEditingPrompt(bool editing) {
    assign(editingPrompt_, editing, &AppState::editingPromptWillChange);
}

void AppState::applyScan(std::vector<SessionInfo> sessions, std::vector<ClaudeProcess> orphans,
                         std::vector<PermissionRequest> permissions) {
    const Timestamp now = services_.clock();
    bool hasNews = false;
    const SessionIndex before = indexById(sessions_);
    for (const SessionInfo& session : sessions) {
        if (const SessionInfo* old = before.value(session.id)) {
            hasNews |= noticeSession(*old, session, now);
        }
    }
    hasNews |= noticePermissions(permissions);
    dropOldCompletions(now);
    assign(sessions_, std::move(sessions), &AppState::sessionsWillChange);
    assign(orphanProcesses_, std::move(orphans), &AppState::orphanProcessesWillChange);
    assign(permissionRequests_, std::move(permissions), &AppState::permissionRequestsWillChange);
    if (hasNews) {
        peek();
    }
}

bool AppState::noticeSession(const SessionInfo& before, const SessionInfo& after, Timestamp now) {
    const bool completed =
        before.status == SessionStatus::working && after.status == SessionStatus::done;
    const bool asks = !before.ask && after.ask;
    const bool plans = !before.plan && after.plan;
    if (completed) {
        setCompletion(after.sessionId, now);
        cue("Glass");
    }
    if (asks) {
        cue("Ping");
    }
    if (plans) {
        cue("Ping");
    }
    return completed || asks || plans;
}

bool AppState::noticePermissions(const std::vector<PermissionRequest>& permissions) {
    const bool anyNew = std::any_of(
        permissions.begin(), permissions.end(), [this](const PermissionRequest& request) {
            return withId(permissionRequests_, request.id) == permissionRequests_.end();
        });
    if (anyNew) {
        cue("Submarine");
    }
    return anyNew;
}

void AppState::dropOldCompletions(Timestamp now) {
    Completions kept;
    for (auto entry = recentCompletions_.cbegin(); entry != recentCompletions_.cend(); ++entry) {
        if (secondsBetween(entry.value(), now) < completionLifetime) {
            kept.insert(entry.key(), entry.value());
        }
    }
    assign(recentCompletions_, std::move(kept), &AppState::recentCompletionsWillChange);
}

void AppState::cue(std::string_view sound) {
    if (settings_.soundsEnabled) {
        services_.sounds.play(sound, cueVolume);
    }
}

void AppState::peek() {
    if (!expanded_) {
        assign(expanded_, true, &AppState::expandedWillChange);
        collapseAfter(peekTime);
    }
}

void AppState::collapseAfter(double seconds) {
    cancelCollapse();
    collapseWork_ = services_.mainQueue.after(seconds, [model = QPointer(this)] {
        if (model) {
            model->collapse();
        }
    });
}

void AppState::cancelCollapse() {
    if (collapseWork_) {
        collapseWork_->cancel();
    }
}

void AppState::collapse() {
    if (!pinned_ && !editingPrompt_) {
        assign(expanded_, false, &AppState::expandedWillChange);
        assign(selectedSessionId_, std::optional<QString>(),
               &AppState::selectedSessionIdWillChange);
    }
}

void AppState::hoverChanged(bool inside) {
    cancelCollapse();
    if (inside) {
        assign(expanded_, true, &AppState::expandedWillChange);
    } else if (!pinned_ && !editingPrompt_) {
        collapseAfter(leaveTime);
    }
}

void AppState::togglePin() {
    assign(pinned_, !pinned_, &AppState::pinnedWillChange);
    if (pinned_) {
        assign(expanded_, true, &AppState::expandedWillChange);
    }
}

void AppState::toggleSelection(const QString& id) {
    assign(selectedSessionId_, selectedSessionId_ == id ? std::nullopt : std::optional(id),
           &AppState::selectedSessionIdWillChange);
}

void AppState::jump(const SessionInfo& session) {
    setCompletion(session.sessionId, std::nullopt);
    if (TerminalNavigator::jump(session, services_.applications, services_.keystrokes)
        || activateKnownTerminal()) {
        return;
    }
    if (session.cwd) {
        services_.openFolder(session.cwd->toStdString());
    }
}

bool AppState::activateKnownTerminal() {
    for (const QString& identifier : settings_.terminalBundleIds) {
        if (const auto terminal = services_.applications.withIdentifier(identifier.toStdString())) {
            services_.applications.activate(*terminal);
            return true;
        }
    }
    return false;
}

void AppState::answer(int optionNumber, const SessionInfo& session) {
    if (!typeAnswer(optionNumber, session)) {
        jump(session);
    }
}

bool AppState::typeAnswer(int optionNumber, const SessionInfo& session) {
    if (!settings_.keystrokeAnswers || !session.process || !session.process->terminalPid) {
        return false;
    }
    if (!services_.keystrokes.isTrusted()) {
        services_.keystrokes.requestTrust();
        return false;
    }
    return AnswerInjector::answer(optionNumber, *session.process->terminalPid,
                                  services_.applications, services_.keystrokes,
                                  services_.mainQueue);
}

void AppState::dismiss(const PermissionRequest& request) {
    NotificationWatcher::dismiss(request, services_.files, services_.home);
    std::vector<PermissionRequest> remaining = permissionRequests_;
    std::erase_if(remaining, [&](const PermissionRequest& r) { return r.id == request.id; });
    assign(permissionRequests_, std::move(remaining), &AppState::permissionRequestsWillChange);
}

void AppState::respondToPermission(const PermissionRequest& request, int optionNumber) {
    // The request may be one of the model's own, which goes here.
    const QString sessionId = request.sessionId;
    dismiss(request);
    const auto session =
        std::find_if(sessions_.begin(), sessions_.end(), [&](const SessionInfo& candidate) {
            return candidate.sessionId == sessionId;
        });
    if (session != sessions_.end()) {
        answer(optionNumber, *session);
    }
}

void AppState::sendPrompt(const QString& text, const SessionInfo& session) {
    const QString prompt = text.trimmed();
    const QString id = session.id;
    if (prompt.isEmpty() || promptingSessions_.contains(id)) {
        return;
    }
    if (session.process) {
        setPromptError(id, QStringLiteral("Session is active in the terminal — prompt it there"));
        return;
    }
    QSet<QString> prompting = promptingSessions_;
    assign(promptingSessions_, prompting << id, &AppState::promptingSessionsWillChange);
    setPromptError(id, std::nullopt);
    services_.sendPrompt(prompt, session, settings_,
                         [model = QPointer(this), id](const std::optional<QString>& error) {
                             if (model) {
                                 model->finishPrompt(id, error);
                             }
                         });
}

void AppState::finishPrompt(const QString& id, const std::optional<QString>& error) {
    QSet<QString> prompting = promptingSessions_;
    prompting.remove(id);
    assign(promptingSessions_, std::move(prompting), &AppState::promptingSessionsWillChange);
    setPromptError(id, error);
}

void AppState::setCompletion(const QString& sessionId, std::optional<Timestamp> time) {
    Completions completions = recentCompletions_;
    if (time) {
        completions.insert(sessionId, *time);
    } else {
        completions.remove(sessionId);
    }
    assign(recentCompletions_, std::move(completions), &AppState::recentCompletionsWillChange);
}

void AppState::setPromptError(const QString& id, const std::optional<QString>& error) {
    PromptErrors errors = promptErrors_;
    if (error) {
        errors.insert(id, *error);
    } else {
        errors.remove(id);
    }
    assign(promptErrors_, std::move(errors), &AppState::promptErrorsWillChange);
}

} // namespace sallowmere
