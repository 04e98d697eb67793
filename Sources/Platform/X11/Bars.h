// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <vector>

namespace sallowmere {

/// What a bar or dock keeps for itself at one edge of the desktop, all screens together, in pixels
/// from its upper left corner.
struct Bar {
    enum class Edge { left, right, top, bottom };

    xcb_window_t window = XCB_NONE;
    Edge edge = Edge::top;
    /// How far it reaches in from the desktop's edge.
    int reach = 0;
    /// From where to where along the edge, both included.
    int begin = 0;
    int end = 0;

    bool operator==(const Bar&) const = default;
};

/// Those on the desktop now, in no special order. `connection` must be alive.
std::vector<Bar> bars(X11Connection& connection);

/// A part of the desktop in pixels, from its upper left corner.
struct PixelArea {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const PixelArea&) const = default;
};

/// What bars leave of a screen. `desktop` is the size of all screens together. A bar counts on the
/// screens that it reaches into and leaves something of.
PixelArea without(const std::vector<Bar>& bars, const PixelArea& screen, const PixelArea& desktop);

} // namespace sallowmere
