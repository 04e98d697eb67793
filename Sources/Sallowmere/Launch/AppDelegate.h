// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/MotionPreference.h"
#include "Platform/X11/X11Screens.h"
#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "Sallowmere/Launch/SystemServices.h"
#include "Sallowmere/Panel/NotchWindowController.h"
#include "Sallowmere/Panel/PanelModel.h"
#include "Sallowmere/Views/PanelView.h"
#include "Sallowmere/Window/X11NotchPanel.h"

#include <functional>
#include <memory>

namespace sallowmere {

/// Puts the running program together: the model, the panel that shows it and the engine that keeps
/// it current. Main thread.
class AppDelegate {
public:
    /// `services` must outlive this.
    explicit AppDelegate(SystemServices& services) : services_(services) {}

    /// Once, when the application object is there. Nothing waits for a scan: the panel is shown
    /// before the first one starts. `quit` is called when the user wants the program to end.
    void applicationDidFinishLaunching(std::function<void()> quit);

    /// Takes the panel off the screen for good, just before the program ends.
    void applicationWillTerminate() { panel_->hangUp(); }

private:
    void showPanel();

    SystemServices& services_;
    std::unique_ptr<AppState> state_;
    std::unique_ptr<PanelModel> model_;
    std::unique_ptr<X11Screens> screens_;
    std::unique_ptr<MotionPreference> motion_;
    std::unique_ptr<PanelView> view_;
    std::unique_ptr<X11NotchPanel> panel_;
    std::unique_ptr<NotchWindowController> windowController_;
    std::shared_ptr<RefreshEngine> engine_;
};

} // namespace sallowmere
