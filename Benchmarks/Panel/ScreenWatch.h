// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace sallowmere {

/// A look at a screen from outside, by a client of its X server that is told of everything at the
/// moment when it happens. All throw when the server does not answer.
class ScreenWatch {
public:
    using Moment = std::chrono::steady_clock::time_point;

    struct Event {
        enum class Kind { mapped, configured, drawn };

        Kind kind;
        /// For what was drawn, the window that is being followed.
        xcb_window_t window;
        /// Of a window that was configured.
        int height;
        Moment at;
    };

    struct Area {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    explicit ScreenWatch(const std::string& display);
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;
    ~ScreenWatch();

    /// Throws when none has come after half a minute.
    void waitForWindowManager();

    /// Gives the background a colour that no panel has.
    void paintBackground();

    /// From now on tells of what is drawn on the whole screen, or on one window only: once, until
    /// that event was taken, however much was drawn.
    void followScreen();
    void followWindow(xcb_window_t window);

    /// The next event, or nothing when there is none until `deadline`.
    std::optional<Event> next(Moment deadline);

    /// Lets time pass; how often something was drawn meanwhile.
    int framesUntil(Moment end);

    /// The process that says it owns a window; 0 for none.
    pid_t ownerOf(xcb_window_t window);
    Area areaOf(xcb_window_t window);

    /// Whether an area shows black for the most part, something on it, and nothing of the
    /// background in its middle.
    bool showsBar(const Area& area);

    /// Puts the pointer there, as a user does.
    void movePointer(int x, int y);

private:
    xcb_atom_t atom(const std::string& name);
    /// The first 32-bit number of a window's property; 0 for none.
    std::uint32_t number(xcb_window_t window, const std::string& property);
    std::optional<Event> translated(const xcb_generic_event_t& event);
    void follow(xcb_window_t window);

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
    std::uint8_t damageEvent_ = 0;
    xcb_damage_damage_t damage_ = XCB_NONE;
    xcb_window_t followed_ = XCB_NONE;
};

} // namespace sallowmere
