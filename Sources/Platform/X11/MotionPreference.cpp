// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/MotionPreference.h"

#include "Platform/X11/XSettings.h"

namespace sallowmere {

MotionPreference::MotionPreference(X11Events& events, X11Connection& connection)
    : events_(events), connection_(connection) {
    connect(&events, &X11Events::arrived, this, &MotionPreference::notice);
    read();
}

void MotionPreference::notice(const xcb_generic_event_t* event) {
    if (!connection_.isAlive()) {
        return;
    }
    // A keeper that comes up tells the whole desktop.
    const auto* property = eventOf<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
    const auto* message = eventOf<xcb_client_message_event_t>(event, XCB_CLIENT_MESSAGE);
    const bool isNewKeeper = message != nullptr && message->window == connection_.root()
                             && message->type == connection_.atom("MANAGER");
    if (isNewKeeper || (property != nullptr && property->window == keeper_)) {
        read();
    }
}

void MotionPreference::read() {
    if (!connection_.isAlive()) {
        return;
    }
    const xcb_window_t keeper = XSettings::keeper(connection_).value_or(XCB_NONE);
    if (keeper != keeper_ && keeper != XCB_NONE) {
        events_.watchProperties(keeper);
    }
    keeper_ = keeper;
    const bool wanted = XSettings::wantsAnimations(connection_);
    if (isWanted_ != wanted) {
        isWanted_ = wanted;
        emit changed(wanted);
    }
}

} // namespace sallowmere
