// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Events.h"

#include "Platform/X11/XcbMemory.h"

#include <xcb/xfixes.h>

namespace sallowmere {

namespace {

constexpr std::uint32_t desktopEvents = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY
                                        | XCB_EVENT_MASK_STRUCTURE_NOTIFY
                                        | XCB_EVENT_MASK_PROPERTY_CHANGE;

xcb_window_t rootOf(xcb_connection_t* connection, int screen) {
    xcb_screen_iterator_t each = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && each.rem > 1; --screen) {
        xcb_screen_next(&each);
    }
    return each.data->root;
}

/// The selection whose owner is the compositor of a screen.
xcb_atom_t compositorSelection(xcb_connection_t* connection, int screen) {
    const std::string name = "_NET_WM_CM_S" + std::to_string(screen);
    const XcbMemory<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_NONE);
}

bool hasXfixes(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_xfixes_id);
    return data != nullptr && data->present != 0
           && XcbMemory<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version_reply(
               connection, xcb_xfixes_query_version(connection, 1, 0), nullptr));
}

} // namespace

X11Events::X11Events(const std::string& display) {
    unread_.setSingleShot(true);
    unread_.setInterval(0);
    connect(&unread_, &QTimer::timeout, this, &X11Events::dispatch);
    int screen = 0;
    connection_ = xcb_connect(display.empty() ? nullptr : display.c_str(), &screen);
    if (xcb_connection_has_error(connection_) == 0) {
        watchDesktop(screen);
        readable_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_),
                                                      QSocketNotifier::Read);
        connect(readable_.get(), &QSocketNotifier::activated, this, &X11Events::dispatch);
    }
}

X11Events::~X11Events() {
    readable_.reset();
    xcb_disconnect(connection_);
}

void X11Events::watchDesktop(int screen) {
    const xcb_window_t root = rootOf(connection_, screen);
    if (hasXfixes(connection_)) {
        xcb_xfixes_select_selection_input(
            connection_, root, compositorSelection(connection_, screen),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        compositorEvent_ = xcb_get_extension_data(connection_, &xcb_xfixes_id)->first_event
                           + XCB_XFIXES_SELECTION_NOTIFY;
    }
    select(root, desktopEvents);
}

void X11Events::watchProperties(xcb_window_t window) {
    select(window, XCB_EVENT_MASK_PROPERTY_CHANGE);
}

void X11Events::watchFocus(xcb_window_t window) {
    select(window, XCB_EVENT_MASK_FOCUS_CHANGE);
}

void X11Events::select(xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_);
    // While it writes, what the server has to tell may be read, which nobody would be woken for.
    unread_.start();
}

void X11Events::announce(const xcb_generic_event_t* event) {
    if (compositorEvent_ && eventOf<xcb_generic_event_t>(event, *compositorEvent_) != nullptr) {
        emit compositorChanged();
    } else {
        emit arrived(event);
    }
}

void X11Events::dispatch() {
    while (const XcbMemory<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        announce(event.get());
    }
    if (readable_ && xcb_connection_has_error(connection_) != 0) {
        readable_->setEnabled(false);
    }
}

} // namespace sallowmere
