// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Connection.h"

#include "Platform/X11/XcbMemory.h"

namespace sallowmere {

X11Connection::X11Connection(const std::string& display)
    : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), &screen_)) {
    if (xcb_connection_has_error(connection_) != 0) {
        return;
    }
    isUsable_ =
        xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) != 0
        && screen_ < ewmh_.nb_screens;
    if (isUsable_) {
        root_ = ewmh_.screens[screen_]->root;
        createWindow();
    }
}

X11Connection::~X11Connection() {
    if (isUsable_) {
        xcb_ewmh_connection_wipe(&ewmh_);
    }
    xcb_disconnect(connection_);
}

void X11Connection::createWindow() {
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root_, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
}

bool X11Connection::isAlive() {
    if (!isUsable_) {
        return false;
    }
    while (XcbMemory<xcb_generic_event_t>(xcb_poll_for_event(connection_))) {
    }
    return xcb_connection_has_error(connection_) == 0;
}

bool X11Connection::has(xcb_extension_t& extension) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0;
}

bool X11Connection::hasExtension(std::string_view name) {
    const XcbMemory<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection_,
        xcb_query_extension(connection_, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply && reply->present != 0;
}

xcb_atom_t X11Connection::atom(std::string_view name) {
    const XcbMemory<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_NONE);
}

bool X11Connection::hasWindowManager() {
    xcb_window_t named = XCB_NONE;
    xcb_window_t itself = XCB_NONE;
    // What a window manager left behind when it ended names a window that is no more.
    return xcb_ewmh_get_supporting_wm_check_reply(
               &ewmh_, xcb_ewmh_get_supporting_wm_check(&ewmh_, root_), &named, nullptr)
               != 0
           && xcb_ewmh_get_supporting_wm_check_reply(
                  &ewmh_, xcb_ewmh_get_supporting_wm_check(&ewmh_, named), &itself, nullptr)
                  != 0
           && named == itself;
}

bool X11Connection::isKeyboardGrabbed() {
    // A window that is not shown never gets a grab, and the server tells first when another client
    // has it already.
    const XcbMemory<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection_,
                                xcb_grab_keyboard(connection_, 0, window_, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

xcb_timestamp_t X11Connection::serverTime() {
    // Each change of a property is announced with its time, also one by nothing at all.
    xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    const XcbMemory<xcb_get_input_focus_reply_t> untilItCame(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (const XcbMemory<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)}) {
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
            time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
        }
    }
    return time;
}

} // namespace sallowmere
