// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace sallowmere {

// Places on every keyboard of a personal computer.
namespace Key {
inline constexpr std::uint8_t control = 37;
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t alt = 64;
inline constexpr std::uint8_t space = 65;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t scrollLock = 78;
inline constexpr std::uint8_t super = 133;
} // namespace Key

/// What the test itself does on an X server: looks at it, shows windows, and is its user.
class XClient {
public:
    explicit XClient(const std::string& display);
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;
    ~XClient();

    xcb_connection_t* xcb() { return connection_; }
    xcb_ewmh_connection_t* ewmh() { return &ewmh_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(const std::string& name);
    /// Returns when the server has done all that was asked.
    void sync();

    /// The window with the keyboard.
    xcb_window_t focus();
    /// Whether that is this window or one within it.
    bool hasFocus(xcb_window_t window);
    /// Gives the keyboard without asking the window manager.
    void setFocus(xcb_window_t window);
    xcb_window_t parentOf(xcb_window_t window);

    /// The managed windows, the oldest first.
    std::vector<xcb_window_t> clients();
    bool isManaged(xcb_window_t window);
    bool isFullScreen(xcb_window_t window);
    /// Whether no managed window lies in front of it.
    bool isFront(xcb_window_t window);
    std::uint32_t desktop();
    std::uint32_t desktopOf(xcb_window_t window);
    bool isMinimised(xcb_window_t window);

    /// Returns when the window manager, which must be running, has done all that it was asked.
    void settle();

    /// Each asks the window manager and waits until it is so.
    void activate(xcb_window_t window);
    void minimise(xcb_window_t window);
    void moveToDesktop(xcb_window_t window, std::uint32_t desktop);
    void makeFullScreen(xcb_window_t window);
    /// The window that the window manager calls the active one.
    xcb_window_t activeWindow();
    /// Asks until the window manager listens.
    void showDesktop(std::uint32_t desktop);

    void press(std::uint8_t key);
    void release(std::uint8_t key);
    void tap(std::uint8_t key);

    /// A window of this process that is not shown yet.
    xcb_window_t createWindow(xcb_window_t parent = XCB_NONE);
    void setText(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, const std::string& text);
    void setNumber(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, std::uint32_t number);
    void setTitle(xcb_window_t window, const std::string& title);
    /// Waits until the window manager manages it.
    void show(xcb_window_t window);
    /// Waits until the window manager knows that it has gone.
    void close(xcb_window_t window);
    /// Shows a window that the window manager has nothing to do with, as menus are.
    xcb_window_t showUnmanaged();

    /// Takes the whole keyboard for the root window; false when it is refused.
    bool grabKeyboard();
    void ungrabKeyboard();
    /// How many keys were pressed since the last call and came here.
    int keysReceived();

private:
    bool hasProperty(xcb_window_t window, xcb_atom_t name);
    void tellRoot(xcb_window_t window, xcb_atom_t type, std::uint32_t first,
                  std::uint32_t second = 0, std::uint32_t third = 0, std::uint32_t fourth = 0);
    void type(std::uint8_t event, std::uint8_t key);

    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
    xcb_window_t root_ = XCB_NONE;
};

} // namespace sallowmere
