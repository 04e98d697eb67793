// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"

#include <QElapsedTimer>
#include <QObject>

#include <optional>

namespace sallowmere {

/// Takes the keyboard for a window that no window manager gives it to, and hands it back. Main
/// thread.
class PanelKeyboard : public QObject {
    Q_OBJECT

public:
    /// Under XWayland the compositor decides who gets the keyboard, and gives it only to a window
    /// that comes up: one that is as good as invisible comes up for the panel, which grabs what is
    /// typed there.
    enum class Server { x11, xwayland };

    /// The references must outlive this.
    PanelKeyboard(X11Events& events, X11Connection& connection, xcb_window_t window, Server server);
    ~PanelKeyboard() override;

    bool isHeld() const { return isHeld_; }
    /// Whether the window has to grab the keyboard to get what is typed while it is held.
    bool needsGrab() const { return server_ == Server::xwayland; }

    /// Asks for it, also when it is thought to be there; `heldChanged` tells when it is. Under
    /// XWayland nobody tells when a window that is none of an X server's gets it instead.
    void take();
    /// The window that has it, or had it when it was taken.
    std::optional<xcb_window_t> frontmost();
    /// Hands it to a window; when that has gone or there is none, to the one that the window
    /// manager calls the active one, else to the frontmost, else to the one under the pointer.
    void handTo(std::optional<xcb_window_t> window);

signals:
    void heldChanged(bool held);

private:
    void notice(const xcb_generic_event_t* event);
    void setHeld(bool held);
    xcb_window_t focused();
    void focus(xcb_window_t window);
    bool canHaveIt(xcb_window_t window);
    xcb_window_t fitWindow();
    void showHelper();
    void removeHelper();
    bool isSettling() const;

    X11Connection& connection_;
    const xcb_window_t window_;
    const Server server_;
    bool isHeld_ = false;
    std::optional<xcb_window_t> previous_;
    xcb_window_t helper_ = XCB_NONE;
    QElapsedTimer sinceHelper_;
};

} // namespace sallowmere
