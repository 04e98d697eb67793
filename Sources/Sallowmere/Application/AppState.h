// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/FolderOpener.h"
#include "Platform/Keystrokes.h"
#include "Platform/WorkQueue.h"
#include "Sallowmere/Permissions/PermissionRequest.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Processes/PromptRunner.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Sounds/SoundPlayer.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// What the model acts on the world with. The references must outlive the model and whatever it
/// left with `mainQueue`.
struct AppServices {
    /// Starts a headless prompt, as `PromptRunner::send` does.
    using PromptSender =
        std::function<void(const QString& prompt, const SessionInfo& session,
                           const Settings& settings, PromptRunner::Completion completion)>;

    Clock clock;
    MainQueue& mainQueue;
    const FileSystem& files;
    /// The user's home directory.
    std::string home;
    Applications& applications;
    Keystrokes& keystrokes;
    FolderOpener openFolder;
    SoundPlayer& sounds;
    PromptSender sendPrompt;
};

/// The one observable model of the running program: what the last scans found, and how the panel
/// stands. It also decides when the panel opens by itself, for a while, and when it closes.
///
/// Every assignment to a property, also of an equal value, is announced before the new value is
/// stored: first by `willChange`, then by the property's own signal with the new value, which is
/// what a subscriber must use. Main thread only.
class AppState : public QObject {
    Q_OBJECT

public:
    using Completions = QMap<QString, Timestamp>;
    using PromptErrors = QMap<QString, QString>;

    /// Seconds after which the panel closes again, when it opened by itself and when the pointer
    /// left it, and for which a completion is remembered.
    static constexpr double peekTime = 5.0;
    static constexpr double leaveTime = 0.35;
    static constexpr double completionLifetime = 600;

    AppState(Settings settings, AppServices services);

    /// What holds for as long as the program runs.
    const Settings& settings() const { return settings_; }

    /// The sessions of the last scan, in its order, each with its process.
    const std::vector<SessionInfo>& sessions() const { return sessions_; }
    /// Running assistants that belong to no listed session.
    const std::vector<ClaudeProcess>& orphanProcesses() const { return orphanProcesses_; }
    /// Pending permission prompts, without those answered since the last scan.
    const std::vector<PermissionRequest>& permissionRequests() const { return permissionRequests_; }
    /// When a session was seen to go from working to done, by `SessionInfo::sessionId`.
    const Completions& recentCompletions() const { return recentCompletions_; }
    const UsageSnapshot& usage() const { return usage_; }
    bool expanded() const { return expanded_; }
    /// Pinned open: it never closes by itself.
    bool pinned() const { return pinned_; }
    /// `SessionInfo::id` of the session whose details are shown.
    const std::optional<QString>& selectedSessionId() const { return selectedSessionId_; }
    /// Natural heights of the expanded content and of the session list in it, in points.
    double contentHeight() const { return contentHeight_; }
    double listContentHeight() const { return listContentHeight_; }
    /// `SessionInfo::id`s of the sessions with a headless prompt under way.
    const QSet<QString>& promptingSessions() const { return promptingSessions_; }
    /// How the last prompt failed, for people, by `SessionInfo::id`.
    const PromptErrors& promptErrors() const { return promptErrors_; }
    /// The prompt field has the keyboard; the panel does not close by itself meanwhile.
    bool editingPrompt() const { return editingPrompt_; }

    void setUsage(UsageSnapshot usage);
    void setContentHeight(double height);
    void setListContentHeight(double height);
    void setEditingPrompt(bool editing);

    /// Takes over what a scan found and tells the user of its news: a turn that ended, a question
    /// or plan that came up, a new permission request. Two listed sessions must not share an `id`:
    /// that ends the program.
    void applyScan(std::vector<SessionInfo> sessions, std::vector<ClaudeProcess> orphans,
                   std::vector<PermissionRequest> permissions);

    /// The pointer entered or left the panel.
    void hoverChanged(bool inside);
    /// Pinning opens the panel; unpinning does not close it.
    void togglePin();
    /// Shows the details of a session, or no details when these are the ones shown.
    void toggleSelection(const QString& id);

    /// Brings the session's terminal to the front; failing that, the first terminal of the
    /// settings that runs; failing that, shows the session's directory.
    void jump(const SessionInfo& session);
    /// Types the answer to a numbered menu into the session's terminal, or jumps there when that
    /// is switched off or not possible. `optionNumber` counts from 1.
    void answer(int optionNumber, const SessionInfo& session);
    /// Removes a permission request and its file.
    void dismiss(const PermissionRequest& request);
    /// Dismisses the request and answers it in its session's terminal.
    void respondToPermission(const PermissionRequest& request, int optionNumber);
    /// Sends a prompt headlessly, unless it is blank, one is under way, or the session is open in
    /// a terminal.
    void sendPrompt(const QString& text, const SessionInfo& session);

signals:
    void willChange();
    void sessionsWillChange(const std::vector<SessionInfo>& sessions);
    void orphanProcessesWillChange(const std::vector<ClaudeProcess>& processes);
    void permissionRequestsWillChange(const std::vector<PermissionRequest>& requests);
    void recentCompletionsWillChange(const Completions& completions);
    void usageWillChange(const UsageSnapshot& usage);
    void expandedWillChange(const bool& expanded);
    void pinnedWillChange(const bool& pinned);
    void selectedSessionIdWillChange(const std::optional<QString>& id);
    void contentHeightWillChange(const double& height);
    void listContentHeightWillChange(const double& height);
    void promptingSessionsWillChange(const QSet<QString>& ids);
    void promptErrorsWillChange(const PromptErrors& errors);
    void editingPromptWillChange(const bool& editing);

private:
    template <typename Value>
    void assign(Value& property, Value value, void (AppState::*stream)(const Value&));

    /// Both play the cues and tell whether there was anything new.
    bool noticeSession(const SessionInfo& before, const SessionInfo& after, Timestamp now);
    bool noticePermissions(const std::vector<PermissionRequest>& permissions);
    void dropOldCompletions(Timestamp now);
    void cue(std::string_view sound);
    void peek();
    void collapseAfter(double seconds);
    void cancelCollapse();
    void collapse();
    bool typeAnswer(int optionNumber, const SessionInfo& session);
    bool activateKnownTerminal();
    void setCompletion(const QString& sessionId, std::optional<Timestamp> time);
    void setPromptError(const QString& id, const std::optional<QString>& error);
    void finishPrompt(const QString& id, const std::optional<QString>& error);

    const Settings settings_;
    const AppServices services_;
    std::vector<SessionInfo> sessions_;
    std::vector<ClaudeProcess> orphanProcesses_;
    std::vector<PermissionRequest> permissionRequests_;
    Completions recentCompletions_;
    UsageSnapshot usage_;
    bool expanded_ = false;
    bool pinned_ = false;
    std::optional<QString> selectedSessionId_;
    double contentHeight_ = 0;
    double listContentHeight_ = 0;
    QSet<QString> promptingSessions_;
    PromptErrors promptErrors_;
    bool editingPrompt_ = false;
    std::shared_ptr<ScheduledWork> collapseWork_;
};

} // namespace sallowmere
