// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/WindowHistory.h"

#include "EndToEnd/XReply.h"

namespace sallowmere {

WindowHistory::WindowHistory(const std::string& display, xcb_window_t window)
    : watcher_(display), window_(window) {
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(watcher_.xcb(), window, XCB_CW_EVENT_MASK, &events);
    watcher_.sync();
}

std::vector<Box> WindowHistory::read() {
    watcher_.sync();
    std::vector<Box> boxes;
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(watcher_.xcb())}) {
        const auto* change = reinterpret_cast<const xcb_configure_notify_event_t*>(event.get());
        if ((event->response_type & 0x7F) == XCB_CONFIGURE_NOTIFY && change->window == window_) {
            boxes.push_back({change->x, change->y, change->width, change->height});
        }
    }
    return boxes;
}

} // namespace sallowmere
