// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/PanelKeyboard.h"

#include "Platform/X11/ClientWindows.h"
#include "Platform/X11/XcbMemory.h"

#include <algorithm>
#include <vector>

namespace sallowmere {

namespace {

/// Smaller ones, and ones without a ground, were given no keyboard (sway 1.7).
constexpr std::uint16_t helperSize = 4;

/// Milliseconds until a compositor has done what a new helper, and the end of the one before, makes
/// it do.
constexpr qint64 settlingTime = 500;

/// Grabs, such as the window manager's for its own keys, come and go; a focus that follows the
/// pointer is none of ours.
bool isLasting(const xcb_focus_in_event_t& change) {
    const bool isGrab =
        change.mode != XCB_NOTIFY_MODE_NORMAL && change.mode != XCB_NOTIFY_MODE_WHILE_GRABBED;
    const bool isPointers = change.detail == XCB_NOTIFY_DETAIL_POINTER
                            || change.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT
                            || change.detail == XCB_NOTIFY_DETAIL_NONE;
    return !isGrab && !isPointers;
}

} // namespace

PanelKeyboard::PanelKeyboard(X11Events& events, X11Connection& connection, xcb_window_t window,
                             Server server)
    : connection_(connection), window_(window), server_(server) {
    connect(&events, &X11Events::arrived, this, &PanelKeyboard::notice);
    events.watchFocus(window);
}

PanelKeyboard::~PanelKeyboard() {
    removeHelper();
}

void PanelKeyboard::notice(const xcb_generic_event_t* event) {
    const auto* gain = eventOf<xcb_focus_in_event_t>(event, XCB_FOCUS_IN);
    const auto* loss = eventOf<xcb_focus_out_event_t>(event, XCB_FOCUS_OUT);
    const auto* property = eventOf<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
    if (server_ == Server::xwayland) {
        if (property != nullptr && property->atom == connection_.ewmh()->_NET_ACTIVE_WINDOW
            && !isSettling()) {
            setHeld(false);
        }
    } else if (gain != nullptr && gain->event == window_ && isLasting(*gain)) {
        setHeld(true);
    } else if (loss != nullptr && loss->event == window_ && isLasting(*loss)) {
        setHeld(false);
    }
}

void PanelKeyboard::setHeld(bool held) {
    if (isHeld_ != held) {
        isHeld_ = held;
        if (!held) {
            removeHelper();
        }
        emit heldChanged(held);
    }
}

void PanelKeyboard::take() {
    if (!connection_.isAlive()) {
        return;
    }
    if (server_ == Server::xwayland) {
        // It may have been taken away without a word: it is asked for anew.
        if (!isSettling()) {
            showHelper();
            setHeld(true);
        }
        return;
    }
    const xcb_window_t owner = focused();
    // It may be there before the server has told so.
    if (owner != window_) {
        previous_ = owner > XCB_INPUT_FOCUS_POINTER_ROOT ? std::optional(owner) : std::nullopt;
        focus(window_);
    }
}

std::optional<xcb_window_t> PanelKeyboard::frontmost() {
    return previous_;
}

void PanelKeyboard::handTo(std::optional<xcb_window_t> window) {
    if (!connection_.isAlive()) {
        return;
    }
    if (helper_ != XCB_NONE) {
        // The compositor gives it back by itself.
        setHeld(false);
    } else if (window && canHaveIt(*window)) {
        focus(*window);
    } else {
        focus(fitWindow());
    }
}

xcb_window_t PanelKeyboard::focused() {
    const XcbMemory<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        connection_.xcb(), xcb_get_input_focus(connection_.xcb()), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

void PanelKeyboard::focus(xcb_window_t window) {
    xcb_set_input_focus(connection_.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(connection_.xcb());
}

bool PanelKeyboard::canHaveIt(xcb_window_t window) {
    const XcbMemory<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        connection_.xcb(), xcb_get_window_attributes(connection_.xcb(), window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t PanelKeyboard::fitWindow() {
    xcb_window_t active = XCB_NONE;
    const bool isKnown =
        xcb_ewmh_get_active_window_reply(
            connection_.ewmh(),
            xcb_ewmh_get_active_window(connection_.ewmh(), connection_.screen()), &active, nullptr)
        != 0;
    if (isKnown && active != window_ && canHaveIt(active)) {
        return active;
    }
    // Some window managers call none the active one while the panel has the keyboard.
    const std::vector<xcb_window_t> windows = ClientWindows(connection_).frontToBack();
    const auto front = std::find_if(windows.begin(), windows.end(),
                                    [this](xcb_window_t window) { return canHaveIt(window); });
    return front == windows.end() ? xcb_window_t(XCB_INPUT_FOCUS_POINTER_ROOT) : *front;
}

void PanelKeyboard::showHelper() {
    removeHelper();
    xcb_connection_t* xcb = connection_.xcb();
    helper_ = xcb_generate_id(xcb);
    const std::uint32_t values[] = {0, 1};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, helper_, connection_.root(), 0, 0, helperSize,
                      helperSize, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_atom_t type = connection_.ewmh()->_NET_WM_WINDOW_TYPE_NORMAL;
    xcb_ewmh_set_wm_window_type(connection_.ewmh(), helper_, 1, &type);
    xcb_map_window(xcb, helper_);
    sinceHelper_.start();
    xcb_flush(xcb);
}

bool PanelKeyboard::isSettling() const {
    return helper_ != XCB_NONE && !sinceHelper_.hasExpired(settlingTime);
}

void PanelKeyboard::removeHelper() {
    if (helper_ != XCB_NONE) {
        xcb_destroy_window(connection_.xcb(), helper_);
        xcb_flush(connection_.xcb());
        helper_ = XCB_NONE;
    }
}

} // namespace sallowmere
