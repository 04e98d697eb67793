// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// The windows that the window manager looks after, and what is known of each. All of it but the
/// process may be anything that the window's owner likes. A window that has gone has no properties.
class ClientWindows {
public:
    /// `connection` must be alive when any of these is called, and outlive this.
    explicit ClientWindows(X11Connection& connection) : connection_(connection) {}

    /// All of them, from back to front as far as the window manager tells the order.
    std::vector<xcb_window_t> managed();

    /// From front to back, those that the user sees now before the minimised ones and those on
    /// other desktops. Without docks, and without the desktop's own window, which are no window
    /// of any terminal. Empty without a window manager.
    std::vector<xcb_window_t> frontToBack();
    /// Those among them that belong to a process.
    std::vector<xcb_window_t> ofProcess(std::int32_t pid);

    /// The process behind a window: the one that the server is connected with, which nobody can
    /// make up; where the server does not tell, the one that the window names, when it says that it
    /// comes from this machine.
    std::optional<std::int32_t> process(xcb_window_t window);

    /// In UTF-8 as far as its owner keeps to that.
    std::optional<std::string> title(xcb_window_t window);

    /// The names of its application: the window's instance and class, and the application ids that
    /// desktops put there.
    std::vector<std::string> applicationNames(xcb_window_t window);

    /// The desktop that a window is on; absent when the user sees that one now.
    std::optional<std::uint32_t> otherDesktop(xcb_window_t window);

    /// Whether a window is this one or lies within it.
    bool contains(xcb_window_t outer, xcb_window_t inner);

private:
    struct Property {
        xcb_atom_t type = XCB_NONE;
        std::string bytes;
    };

    /// A property that holds a text, its first 16 KiB.
    std::optional<Property> text(xcb_window_t window, xcb_atom_t name);
    std::optional<std::string> decodedText(xcb_window_t window, xcb_atom_t name);
    bool isFurniture(xcb_window_t window);
    bool isShown(xcb_window_t window);
    bool hasState(xcb_window_t window, xcb_atom_t state);
    std::optional<std::int32_t> connectedProcess(xcb_window_t window);
    std::optional<std::int32_t> namedProcess(xcb_window_t window);

    X11Connection& connection_;
};

} // namespace sallowmere
