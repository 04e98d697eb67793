// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/XClient.h"

#include "X11/WaitFor.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>

#include <xcb/xtest.h>

namespace sallowmere {

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

constexpr std::uint32_t iconic = 3;

} // namespace

XClient::XClient(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0
        || xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr)
               == 0) {
        throw std::runtime_error("cannot connect with " + display);
    }
    root_ = ewmh_.screens[0]->root;
}

XClient::~XClient() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

xcb_atom_t XClient::atom(const std::string& name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_NONE);
}

void XClient::sync() {
    focus();
}

xcb_window_t XClient::focus() {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

bool XClient::hasFocus(xcb_window_t window) {
    xcb_window_t inner = focus();
    while (inner != XCB_NONE && inner != window) {
        inner = parentOf(inner);
    }
    return inner == window;
}

void XClient::setFocus(xcb_window_t window) {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    sync();
}

xcb_window_t XClient::parentOf(xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    return reply ? reply->parent : xcb_window_t(XCB_NONE);
}

std::vector<xcb_window_t> XClient::clients() {
    xcb_ewmh_get_windows_reply_t reply;
    if (xcb_ewmh_get_client_list_reply(&ewmh_, xcb_ewmh_get_client_list(&ewmh_, 0), &reply, nullptr)
        == 0) {
        return {};
    }
    std::vector<xcb_window_t> windows(reply.windows, reply.windows + reply.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&reply);
    return windows;
}

bool XClient::isManaged(xcb_window_t window) {
    const std::vector<xcb_window_t> windows = clients();
    return std::find(windows.begin(), windows.end(), window) != windows.end();
}

bool XClient::isFront(xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr));
    if (!reply) {
        return false;
    }
    std::map<xcb_window_t, int> places;
    const xcb_window_t* const stack = xcb_query_tree_children(reply.get());
    for (int place = 0; place < xcb_query_tree_children_length(reply.get()); ++place) {
        places[stack[place]] = place;
    }
    const auto placeOf = [&](xcb_window_t client) {
        // Window managers put each window into a frame of theirs.
        for (xcb_window_t w = client; w != XCB_NONE; w = parentOf(w)) {
            if (places.contains(w)) {
                return places[w];
            }
        }
        return -1;
    };
    const std::vector<xcb_window_t> windows = clients();
    return std::all_of(windows.begin(), windows.end(),
                       [&](xcb_window_t other) { return placeOf(other) <= placeOf(window); });
}

std::uint32_t XClient::desktop() {
    std::uint32_t number = 0;
    xcb_ewmh_get_current_desktop_reply(&ewmh_, xcb_ewmh_get_current_desktop(&ewmh_, 0), &number,
                                       nullptr);
    return number;
}

std::uint32_t XClient::desktopOf(xcb_window_t window) {
    std::uint32_t number = 0;
    xcb_ewmh_get_wm_desktop_reply(&ewmh_, xcb_ewmh_get_wm_desktop(&ewmh_, window), &number,
                                  nullptr);
    return number;
}

bool XClient::isMinimised(xcb_window_t window) {
    xcb_ewmh_get_atoms_reply_t states;
    if (xcb_ewmh_get_wm_state_reply(&ewmh_, xcb_ewmh_get_wm_state(&ewmh_, window), &states, nullptr)
        == 0) {
        return false;
    }
    const bool hidden =
        std::count(states.atoms, states.atoms + states.atoms_len, ewmh_._NET_WM_STATE_HIDDEN) > 0;
    xcb_ewmh_get_atoms_reply_wipe(&states);
    return hidden;
}

void XClient::tellRoot(xcb_window_t window, xcb_atom_t type, std::uint32_t first,
                       std::uint32_t second, std::uint32_t third, std::uint32_t fourth) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    event.data.data32[2] = third;
    event.data.data32[3] = fourth;
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    sync();
}

bool XClient::hasProperty(xcb_window_t window, xcb_atom_t name) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    return reply && reply->type != XCB_NONE;
}

// It answers in turn. Each answers one question at least: how wide its frames are, or which version
// of the conventions it follows.
void XClient::settle() {
    const xcb_window_t asking = createWindow();
    const xcb_atom_t version = atom("VERSION");
    tellRoot(asking, ewmh_._NET_REQUEST_FRAME_EXTENTS, 0);
    xcb_convert_selection(connection_, asking, atom("WM_S0"), version, version, XCB_CURRENT_TIME);
    waitFor("the window manager to answer", [&] {
        return hasProperty(asking, ewmh_._NET_FRAME_EXTENTS) || hasProperty(asking, version);
    });
    // The window stays: some give the other answer as well, and end when nobody is there to get it.
}

void XClient::activate(xcb_window_t window) {
    tellRoot(window, ewmh_._NET_ACTIVE_WINDOW, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    settle();
    waitFor("a window that was activated", [&] { return hasFocus(window) && isFront(window); });
}

void XClient::minimise(xcb_window_t window) {
    tellRoot(window, atom("WM_CHANGE_STATE"), iconic);
    waitFor("a window to be minimised", [&] { return isMinimised(window) && !hasFocus(window); });
}

void XClient::moveToDesktop(xcb_window_t window, std::uint32_t desktop) {
    tellRoot(window, ewmh_._NET_WM_DESKTOP, desktop, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    waitFor("a window to change desktops",
            [&] { return desktopOf(window) == desktop && !hasFocus(window); });
}

bool XClient::isFullScreen(xcb_window_t window) {
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    const Reply<xcb_get_geometry_reply_t> screen(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, root_), nullptr));
    return size && screen && size->width + 2 * size->border_width == screen->width
           && size->height + 2 * size->border_width == screen->height;
}

void XClient::makeFullScreen(xcb_window_t window) {
    tellRoot(window, ewmh_._NET_WM_STATE, XCB_EWMH_WM_STATE_ADD, ewmh_._NET_WM_STATE_FULLSCREEN, 0,
             XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    waitFor("a window to fill the screen", [&] { return isFullScreen(window); });
}

xcb_window_t XClient::activeWindow() {
    xcb_window_t window = XCB_NONE;
    xcb_ewmh_get_active_window_reply(&ewmh_, xcb_ewmh_get_active_window(&ewmh_, 0), &window,
                                     nullptr);
    return window;
}

void XClient::showDesktop(std::uint32_t number) {
    waitFor("another desktop", [&] {
        tellRoot(root_, ewmh_._NET_CURRENT_DESKTOP, number);
        return desktop() == number;
    });
}

void XClient::type(std::uint8_t event, std::uint8_t key) {
    xcb_test_fake_input(connection_, event, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    sync();
}

void XClient::press(std::uint8_t key) {
    type(XCB_KEY_PRESS, key);
}

void XClient::release(std::uint8_t key) {
    type(XCB_KEY_RELEASE, key);
}

void XClient::tap(std::uint8_t key) {
    press(key);
    release(key);
}

xcb_window_t XClient::createWindow(xcb_window_t parent) {
    const xcb_window_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window,
                      parent == XCB_NONE ? root_ : parent, 20, 20, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

void XClient::setText(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                      const std::string& text) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, name, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
    sync();
}

void XClient::setNumber(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                        std::uint32_t number) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, name, type, 32, 1, &number);
    sync();
}

void XClient::setTitle(xcb_window_t window, const std::string& title) {
    setText(window, ewmh_._NET_WM_NAME, ewmh_.UTF8_STRING, title);
}

void XClient::show(xcb_window_t window) {
    xcb_map_window(connection_, window);
    sync();
    waitFor("a window to be managed", [&] { return isManaged(window); });
}

void XClient::close(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    waitFor("a window to close", [&] { return !isManaged(window); });
}

xcb_window_t XClient::showUnmanaged() {
    const xcb_window_t window = createWindow();
    const std::uint32_t yes = 1;
    xcb_change_window_attributes(connection_, window, XCB_CW_OVERRIDE_REDIRECT, &yes);
    xcb_map_window(connection_, window);
    sync();
    return window;
}

bool XClient::grabKeyboard() {
    const Reply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection_,
                                xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void XClient::ungrabKeyboard() {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    sync();
}

int XClient::keysReceived() {
    sync();
    int count = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        count += (event->response_type & 0x7F) == XCB_KEY_PRESS ? 1 : 0;
    }
    return count;
}

} // namespace sallowmere
