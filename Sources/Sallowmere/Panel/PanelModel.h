// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Keystrokes.h"
#include "Platform/WorkQueue.h"
#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Panel/KeyedListModel.h"
#include "Sallowmere/Panel/PanelRows.h"

#include <QObject>
#include <QString>

#include <optional>

namespace sallowmere {

/// The model as the views want it: rows that change in place, texts, and what a click does. It
/// takes over what changed in the model once for each turn of the event loop, after the model has
/// stored it, and announces only what is different then. Main thread only.
class PanelModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool expanded READ expanded NOTIFY expandedChanged)
    Q_PROPERTY(bool pinned READ pinned NOTIFY pinnedChanged)
    /// `SessionRow::id` of the session whose details are shown, or empty.
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY selectedIdChanged)
    Q_PROPERTY(sallowmere::BarRow bar READ bar NOTIFY barChanged)
    Q_PROPERTY(sallowmere::UsageRow usage READ usage NOTIFY usageChanged)
    Q_PROPERTY(sallowmere::AskRow ask READ ask NOTIFY askChanged)
    Q_PROPERTY(sallowmere::PlanRow plan READ plan NOTIFY planChanged)
    Q_PROPERTY(sallowmere::KeyedListModel* completions READ completions CONSTANT)
    Q_PROPERTY(sallowmere::KeyedListModel* approvals READ approvals CONSTANT)
    Q_PROPERTY(sallowmere::KeyedListModel* sessions READ sessions CONSTANT)
    /// Of the selected session.
    Q_PROPERTY(sallowmere::KeyedListModel* log READ log CONSTANT)
    Q_PROPERTY(sallowmere::KeyedListModel* processes READ processes CONSTANT)

public:
    /// All must outlive this.
    PanelModel(AppState& state, Keystrokes& keystrokes, MainQueue& queue);

    bool expanded() const { return expanded_; }
    bool pinned() const { return pinned_; }
    QString selectedId() const { return selectedId_; }
    BarRow bar() const { return bar_; }
    UsageRow usage() const { return usage_; }
    AskRow ask() const { return ask_; }
    PlanRow plan() const { return plan_; }
    KeyedListModel* completions() { return &completions_; }
    KeyedListModel* approvals() { return &approvals_; }
    KeyedListModel* sessions() { return &sessions_; }
    KeyedListModel* log() { return &log_; }
    KeyedListModel* processes() { return &processes_; }

    /// What the views measured, in points.
    Q_INVOKABLE void setContentHeight(double height);
    Q_INVOKABLE void setListContentHeight(double height);
    Q_INVOKABLE void setEditingPrompt(bool editing);

    Q_INVOKABLE void togglePin();
    /// Sessions and requests that are gone by now are passed over.
    Q_INVOKABLE void toggleSelection(const QString& id);
    Q_INVOKABLE void jump(const QString& id);
    Q_INVOKABLE void answer(const QString& id, int optionNumber);
    Q_INVOKABLE void respond(const QString& requestId, int optionNumber);
    Q_INVOKABLE void dismiss(const QString& requestId);
    Q_INVOKABLE void sendPrompt(const QString& id, const QString& text);
    Q_INVOKABLE void quit();

signals:
    void expandedChanged();
    void pinnedChanged();
    void selectedIdChanged();
    void barChanged();
    void usageChanged();
    void askChanged();
    void planChanged();
    /// The user wants the program to end.
    void quitRequested();

private:
    void scheduleRefresh();
    void refresh();
    void refreshLists(const std::vector<SessionInfo>& ordered);
    void refreshLog();
    void refreshCards(const std::vector<SessionInfo>& ordered);
    ApprovalRow approval(const PermissionRequest& request) const;
    bool isTypedInto(const SessionInfo& session) const;

    template <typename Value>
    void show(Value& shown, Value value, void (PanelModel::*changed)());

    AppState& state_;
    Keystrokes& keystrokes_;
    MainQueue& queue_;
    bool isRefreshScheduled_ = false;
    bool expanded_ = false;
    bool pinned_ = false;
    QString selectedId_;
    BarRow bar_;
    UsageRow usage_;
    AskRow ask_;
    PlanRow plan_;
    KeyedListModel completions_;
    KeyedListModel approvals_;
    KeyedListModel sessions_;
    KeyedListModel log_;
    KeyedListModel processes_;
};

} // namespace sallowmere
