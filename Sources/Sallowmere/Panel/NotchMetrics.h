// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"

#include <optional>

namespace sallowmere {

/// Where the panel hangs, and how large it is. All lengths in points, y growing upwards.
struct NotchMetrics {
    /// The whole frame of the screen it hangs from.
    Rect screenFrame{0, 0, 1440, 900};
    /// Width of the camera notch; 0 without one.
    double notchWidth = 0;
    /// Height of the collapsed bar: the notch's, or `plainBarHeight` without one.
    double barHeight = plainBarHeight;
    bool hasNotch = false;
    /// Where the panel's upper edge sits: the screen's own with a notch, else that of the area that
    /// bars leave.
    double topY = 876;

    static constexpr double plainBarHeight = 30;
    /// Of a notch whose screen does not tell.
    static constexpr double usualNotchWidth = 196;
    static constexpr double leastCollapsedWidth = 240;
    static constexpr double expandedWidth = 664;
    /// Bounds of the height of the expanded content, and what the panel adds to it for its shadow.
    static constexpr double leastContentHeight = 120;
    static constexpr double mostContentHeight = 560;
    static constexpr double bottomMargin = 28;

    /// Measures the first screen with a notch, else the main one, else the first. With no screen
    /// at all the previous measurement stays, or the values above hold.
    static NotchMetrics detect(const std::optional<NotchMetrics>& previous, const Screens& screens);

    /// The panel's frame. `wingWidth` is that of the settings, `contentHeight` the natural height
    /// of the expanded content.
    Rect frame(bool expanded, double contentHeight, double wingWidth) const;
    double collapsedWidth(double wingWidth) const;

    bool operator==(const NotchMetrics&) const = default;
};

} // namespace sallowmere
