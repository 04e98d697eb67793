// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"
#include "Platform/WorkQueue.h"
#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Panel/NotchMetrics.h"
#include "Sallowmere/Panel/NotchPanel.h"

#include <QObject>

#include <optional>

namespace sallowmere {

/// Keeps the panel where it belongs: under the notch or at the top edge, as large as the bar or the
/// list, and without the keyboard unless a prompt is typed. Main thread only.
class NotchWindowController : public QObject {
    Q_OBJECT

public:
    /// Seconds that the panel takes to open or close.
    static constexpr double animationTime = 0.16;

    /// Shows the panel, collapsed. All must outlive this.
    NotchWindowController(AppState& state, NotchPanel& panel, Screens& screens, MainQueue& queue);
    ~NotchWindowController() override;

    const NotchMetrics& metrics() const { return metrics_; }

private:
    void followModel();
    void followPanel();
    /// Runs on the main thread, soon, if this is still there then.
    void soon(void (NotchWindowController::*task)());

    /// Each gets the value that the model is about to store.
    void expandedChanged(bool expanded);
    void contentHeightChanged(double height);
    void editingChanged(bool editing);

    void applyFrame(bool expanded, double contentHeight, double seconds);
    void rememberFrontApplication();
    void stopEditing();
    void giveKeyboardBack();
    void screenChanged();

    AppState& state_;
    NotchPanel& panel_;
    Screens& screens_;
    MainQueue& queue_;
    NotchMetrics metrics_;
    bool expanded_;
    double contentHeight_;
    bool editing_;
    /// Who had the keyboard when the panel took it.
    std::optional<NotchPanel::FrontApplication> previousApp_;
};

} // namespace sallowmere
