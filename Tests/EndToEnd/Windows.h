// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XClient.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include <sys/types.h>
#include <xcb/xcb.h>

namespace sallowmere {

/// A rectangle in pixels from the upper left corner of the root window.
struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool contains(const Box& inner) const;
    bool operator==(const Box&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Box& box);

/// What windows are like, as an X server tells it.
namespace Windows {

/// Children of the root window, the uppermost last.
std::vector<xcb_window_t> stack(XClient& client);
/// What can be seen of it, were it in front: where it lies, cut by its shape.
Box box(XClient& client, xcb_window_t window);
/// Where it lies, whatever its shape.
Box geometry(XClient& client, xcb_window_t window);
std::uint8_t depth(XClient& client, xcb_window_t window);
/// Whether a part of it is cut off.
bool isShaped(XClient& client, xcb_window_t window);
bool isViewable(XClient& client, xcb_window_t window);
bool isUnmanaged(XClient& client, xcb_window_t window);
/// The text of a property; empty without one.
std::string text(XClient& client, xcb_window_t window, const std::string& property);
/// The first number of a property; 0 without one.
std::uint32_t number(XClient& client, xcb_window_t window, const std::string& property);
/// Whether the window, or a frame around it, lies over the other one.
bool isAbove(XClient& client, xcb_window_t window, xcb_window_t other);
/// The colour that stands on the screen, as 0xRRGGBB.
std::uint32_t pixel(XClient& client, int x, int y);
Box screen(XClient& client);

} // namespace Windows

} // namespace sallowmere
