// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace sallowmere {

/// Keeps a window that no window manager looks after above those that one does: full-screen windows
/// and docks that come later would cover it. It does not fight others of its kind, such as menus
/// and screen lockers, and gives in for a while to a window that insists. Main thread.
class StackingGuard : public QObject {
    Q_OBJECT

public:
    /// Both must outlive this.
    StackingGuard(X11Events& events, X11Connection& connection, xcb_window_t window);

private:
    void notice(const xcb_generic_event_t* event);
    void check();
    bool isCovered();
    void raise();

    X11Connection& connection_;
    const xcb_window_t window_;
    /// Until what moves now has come to rest.
    QTimer settling_;
    QElapsedTimer sinceFirstRaise_;
    int raises_ = 0;
};

} // namespace sallowmere
