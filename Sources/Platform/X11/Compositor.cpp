// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/Compositor.h"

namespace sallowmere {

bool hasCompositor(X11Connection& connection) {
    xcb_window_t owner = XCB_NONE;
    return connection.isAlive()
           && xcb_ewmh_get_wm_cm_owner_reply(
                  connection.ewmh(),
                  xcb_ewmh_get_wm_cm_owner(connection.ewmh(), connection.screen()), &owner, nullptr)
                  != 0
           && owner != XCB_NONE;
}

} // namespace sallowmere
