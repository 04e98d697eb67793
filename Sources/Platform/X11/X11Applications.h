// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/X11/ClientWindows.h"

namespace sallowmere {

/// The applications with windows on an X server, as its window manager lists them. There are none
/// without a window manager that keeps to the freedesktop.org conventions; bringing a window to the
/// front is asked of it, and it may refuse.
class X11Applications : public Applications {
public:
    /// `connection` must outlive this.
    explicit X11Applications(X11Connection& connection)
        : connection_(connection), windows_(connection) {}

    std::optional<RunningApplication> ofProcess(std::int32_t pid) override;
    /// Compared, in any case of letters, with the class and instance of a window and with the
    /// application ids that desktops attach to it.
    std::optional<RunningApplication> withIdentifier(std::string_view identifier) override;
    void activate(RunningApplication application) override;
    std::vector<ApplicationWindow> windows(RunningApplication application) override;
    void raise(const ApplicationWindow& window) override;
    /// False also while some program has taken the whole keyboard for itself.
    bool hasKeyboard(RunningApplication application) override;

private:
    void bringToFront(xcb_window_t window);

    X11Connection& connection_;
    ClientWindows windows_;
};

} // namespace sallowmere
