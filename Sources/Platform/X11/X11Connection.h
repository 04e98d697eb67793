// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace sallowmere {

/// A connection to an X server and to the window manager on its default screen. Main thread;
/// nothing throws. It does not come back once the server has gone.
class X11Connection {
public:
    /// `display` is a name such as ":1"; the environment's when empty.
    explicit X11Connection(const std::string& display = {});
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    /// Whether the server is there; nothing else may be called while it is not. It is to be asked
    /// before each use, because that also throws away what the server sent unasked, which would
    /// pile up otherwise.
    bool isAlive();

    xcb_connection_t* xcb() { return connection_; }
    xcb_ewmh_connection_t* ewmh() { return &ewmh_; }
    int screen() const { return screen_; }
    xcb_window_t root() const { return root_; }

    /// Whether the server has an extension. Asking for anything of one that it lacks would end the
    /// connection.
    bool has(xcb_extension_t& extension);
    /// The same for one that is never used.
    bool hasExtension(std::string_view name);

    /// The number of a name; `XCB_NONE` when no program has used that name so far.
    xcb_atom_t atom(std::string_view name);

    /// Whether a window manager runs that keeps to the freedesktop.org conventions.
    bool hasWindowManager();

    /// Whether some client, this program included, has taken the whole keyboard for itself, as
    /// screen lockers and menus do. Without any effect on that or on the keyboard.
    bool isKeyboardGrabbed();

    /// The server's own time; `XCB_CURRENT_TIME` when it does not tell.
    xcb_timestamp_t serverTime();

private:
    void createWindow();

    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
    int screen_ = 0;
    xcb_window_t root_ = XCB_NONE;
    /// Never shown.
    xcb_window_t window_ = XCB_NONE;
    bool isUsable_ = false;
};

} // namespace sallowmere
