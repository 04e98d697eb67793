// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelModel.h"

#include "Sallowmere/Panel/PanelContent.h"
#include "Sallowmere/Text/StrangersText.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace sallowmere {

namespace {

/// A copy, because what is done with it may change the list.
template <typename Record>
std::optional<Record> withId(const std::vector<Record>& records, const QString& id) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const Record& record) { return record.id == id; });
    return found == records.end() ? std::nullopt : std::optional(*found);
}

template <typename Record, typename MakeRow>
std::vector<KeyedListModel::Row> rowsOf(const std::vector<Record>& records, MakeRow makeRow) {
    std::vector<KeyedListModel::Row> rows;
    rows.reserve(records.size());
    for (const Record& record : records) {
        rows.push_back(makeRow(record));
    }
    return rows;
}

} // namespace

PanelModel::PanelModel(AppState& state, Keystrokes& keystrokes, MainQueue& queue)
    : state_(state), keystrokes_(keystrokes), queue_(queue) {
    connect(&state, &AppState::willChange, this, &PanelModel::scheduleRefresh);
    refresh();
}

void PanelModel::scheduleRefresh() {
    if (!std::exchange(isRefreshScheduled_, true)) {
        queue_.post([model = QPointer(this)] {
            if (model) {
                model->refresh();
            }
        });
    }
}

template <typename Value>
void PanelModel::show(Value& shown, Value value, void (PanelModel::*changed)()) {
    if (shown != value) {
        shown = std::move(value);
        emit(this->*changed)();
    }
}

void PanelModel::refresh() {
    isRefreshScheduled_ = false;
    const std::vector<SessionInfo> ordered = PanelContent::orderedSessions(state_.sessions());
    show(usage_, UsageRow::of(state_.usage()), &PanelModel::usageChanged);
    show(bar_, BarRow::of(ordered, state_.permissionRequests(), state_.recentCompletions().size()),
         &PanelModel::barChanged);
    refreshLists(ordered);
    refreshLog();
    refreshCards(ordered);
    show(selectedId_, state_.selectedSessionId().value_or(QString()),
         &PanelModel::selectedIdChanged);
    show(pinned_, state_.pinned(), &PanelModel::pinnedChanged);
    // The last, so that what opens shows what holds now.
    show(expanded_, state_.expanded(), &PanelModel::expandedChanged);
}

void PanelModel::refreshLists(const std::vector<SessionInfo>& ordered) {
    completions_.update(
        rowsOf(PanelContent::completedSessions(ordered, state_.recentCompletions()),
               [](const SessionInfo& session) -> KeyedListModel::Row {
                   return {session.id, QVariant::fromValue(CompletionRow::of(session))};
               }));
    approvals_.update(rowsOf(PanelContent::approvals(state_.permissionRequests()),
                             [this](const PermissionRequest& request) -> KeyedListModel::Row {
                                 return {request.id, QVariant::fromValue(approval(request))};
                             }));
    sessions_.update(rowsOf(ordered, [this](const SessionInfo& session) -> KeyedListModel::Row {
        return {session.id, QVariant::fromValue(SessionRow::of(
                                session, state_.promptingSessions().contains(session.id),
                                state_.promptErrors().value(session.id)))};
    }));
    processes_.update(
        rowsOf(state_.orphanProcesses(), [](const ClaudeProcess& process) -> KeyedListModel::Row {
            return {QString::number(process.pid), QVariant::fromValue(ProcessRow::of(process))};
        }));
}

void PanelModel::refreshLog() {
    const std::optional<QString>& id = state_.selectedSessionId();
    const auto selected = id ? withId(state_.sessions(), *id) : std::nullopt;
    log_.update(rowsOf(selected ? selected->events : std::vector<LogEvent>(),
                       [&](const LogEvent& event) -> KeyedListModel::Row {
                           return {*id + u'\n' + event.id, QVariant::fromValue(LogRow::of(event))};
                       }));
}

void PanelModel::refreshCards(const std::vector<SessionInfo>& ordered) {
    const auto asking = PanelContent::asking(ordered);
    show(ask_, asking ? AskRow::of(*asking, isTypedInto(*asking)) : AskRow(),
         &PanelModel::askChanged);
    const auto planning = PanelContent::planning(ordered);
    show(plan_, planning ? PlanRow::of(*planning) : PlanRow(), &PanelModel::planChanged);
}

ApprovalRow PanelModel::approval(const PermissionRequest& request) const {
    const auto& sessions = state_.sessions();
    const auto session =
        std::find_if(sessions.begin(), sessions.end(), [&](const SessionInfo& candidate) {
            return candidate.sessionId == request.sessionId;
        });
    return {request.id, StrangersText::forPanel(request.message),
            session != sessions.end() && isTypedInto(*session)};
}

bool PanelModel::isTypedInto(const SessionInfo& session) const {
    return PanelContent::answersByKeystroke(session, state_.settings().keystrokeAnswers,
                                            keystrokes_.isTrusted());
}

void PanelModel::setContentHeight(double height) {
    if (state_.contentHeight() != height) {
        state_.setContentHeight(height);
    }
}

void PanelModel::setListContentHeight(double height) {
    if (state_.listContentHeight() != height) {
        state_.setListContentHeight(height);
    }
}

void PanelModel::setEditingPrompt(bool editing) {
    if (state_.editingPrompt() != editing) {
        state_.setEditingPrompt(editing);
    }
}

void PanelModel::togglePin() {
    state_.togglePin();
}

void PanelModel::toggleSelection(const QString& id) {
    if (withId(state_.sessions(), id)) {
        state_.toggleSelection(id);
    }
}

void PanelModel::jump(const QString& id) {
    if (const auto session = withId(state_.sessions(), id)) {
        state_.jump(*session);
    }
}

void PanelModel::answer(const QString& id, int optionNumber) {
    if (const auto session = withId(state_.sessions(), id)) {
        state_.answer(optionNumber, *session);
    }
}

void PanelModel::respond(const QString& requestId, int optionNumber) {
    if (const auto request = withId(state_.permissionRequests(), requestId)) {
        state_.respondToPermission(*request, optionNumber);
    }
}

void PanelModel::dismiss(const QString& requestId) {
    if (const auto request = withId(state_.permissionRequests(), requestId)) {
        state_.dismiss(*request);
    }
}

void PanelModel::sendPrompt(const QString& id, const QString& text) {
    if (const auto session = withId(state_.sessions(), id)) {
        state_.sendPrompt(text, *session);
    }
}

void PanelModel::quit() {
    emit quitRequested();
}

} // namespace sallowmere
