// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XClient.h"

#include <cstdint>
#include <string>

namespace sallowmere {

/// The screen of an X server and what stands at its edge.
class Display {
public:
    explicit Display(XClient& client) : client_(client) {}

    /// Its one output shows so many pixels from now on.
    void resize(std::uint16_t width, std::uint16_t height);
    /// A bar along the upper edge, which keeps so many pixels for itself.
    xcb_window_t showBar(std::uint32_t height);
    void removeBar(xcb_window_t bar);

    /// What X resources say, such as "Xft.dpi: 192".
    void setResources(const std::string& lines);
    /// The ground of the root window, as 0xRRGGBB.
    void paintGround(std::uint32_t color);

private:
    std::uint32_t addMode(std::uint16_t width, std::uint16_t height);

    XClient& client_;
};

} // namespace sallowmere
