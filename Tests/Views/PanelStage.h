// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Panel/NotchMetrics.h"
#include "Sallowmere/Panel/PanelModel.h"
#include "Sallowmere/Views/PanelView.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeFileSystem.h"
#include "Support/FakeQueues.h"

#include <memory>
#include <vector>

namespace sallowmere {

/// The views over a model that the test fills, with a desktop that the test makes up: it gives the
/// keyboard to a panel that asks for it.
class PanelStage {
public:
    explicit PanelStage(const NotchMetrics& metrics = {});

    /// What a scan finds, beside some usage, as the views then show it.
    void scan(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> requests = {},
              std::vector<ClaudeProcess> orphans = {});
    /// The pointer comes.
    void open();
    /// Lets the views take over what the model holds now, and sizes the window as the panel's.
    void settle();

    AppState& state() { return *state_; }
    PanelModel& model() { return *model_; }
    PanelView& view() { return *view_; }
    FakeMainQueue& queue() { return queue_; }
    Timestamp now() const { return start_; }

    struct SentPrompt {
        QString text;
        QString sessionId;
        PromptRunner::Completion completion;
    };

    std::vector<SentPrompt> prompts;
    FakeApplications applications;
    FakeKeystrokes keystrokes;

private:
    AppServices services();

    const NotchMetrics metrics_;
    const Timestamp start_;
    FakeMainQueue queue_;
    FakeFileSystem files_;
    FakeSounds sounds_;
    SoundPlayer player_;
    std::unique_ptr<AppState> state_;
    std::unique_ptr<PanelModel> model_;
    std::unique_ptr<PanelView> view_;
};

} // namespace sallowmere
