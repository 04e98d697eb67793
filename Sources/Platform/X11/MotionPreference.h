// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"

#include <QObject>

namespace sallowmere {

/// Whether the user's desktop wants things to move, as it tells all programs on an X server.
class MotionPreference : public QObject {
    Q_OBJECT

public:
    /// Both must outlive this.
    MotionPreference(X11Events& events, X11Connection& connection);

    bool isWanted() const { return isWanted_; }

signals:
    void changed(bool wanted);

private:
    void notice(const xcb_generic_event_t* event);
    void read();

    X11Events& events_;
    X11Connection& connection_;
    /// Whose settings are watched.
    xcb_window_t keeper_ = XCB_NONE;
    bool isWanted_ = true;
};

} // namespace sallowmere
