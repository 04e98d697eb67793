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

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// The views over a model that the test fills, with a desktop that the test makes up.
class PanelStage {
public:
    explicit PanelStage(const NotchMetrics& metrics = {});

    /// Lets the views take over what the model holds now, and sizes the window as the panel's.
    void settle();

    AppState& state() { return *state_; }
    PanelModel& model() { return *model_; }
    PanelView& view() { return *view_; }
    FakeMainQueue& queue() { return queue_; }
    Timestamp now() const { return start_; }

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

/// One state of the panel, by the name of its picture.
struct PanelScene {
    std::string name;
    bool hasNotch;
    std::function<void(PanelStage&)> set;

    static std::vector<PanelScene> all();
};

} // namespace sallowmere
