// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/NotchMetrics.h"

#include <algorithm>

namespace sallowmere {

namespace {

bool hasNotch(const Screen& screen) {
    return screen.topInset > 0;
}

std::optional<Screen> choose(const Screens& screens) {
    const std::vector<Screen> all = screens.all();
    const auto notched = std::find_if(all.begin(), all.end(), hasNotch);
    if (notched != all.end()) {
        return *notched;
    }
    if (const std::optional<Screen> main = screens.main()) {
        return main;
    }
    return all.empty() ? std::nullopt : std::optional(all.front());
}

double notchWidthOf(const Screen& screen) {
    return screen.leftOfNotch && screen.rightOfNotch
               ? screen.frame.width - *screen.leftOfNotch - *screen.rightOfNotch
               : NotchMetrics::usualNotchWidth;
}

} // namespace

NotchMetrics NotchMetrics::detect(const std::optional<NotchMetrics>& previous,
                                  const Screens& screens) {
    const std::optional<Screen> screen = choose(screens);
    if (!screen) {
        return previous.value_or(NotchMetrics());
    }
    if (sallowmere::hasNotch(*screen)) {
        return {screen->frame, notchWidthOf(*screen), screen->topInset, true, screen->frame.maxY()};
    }
    return {screen->frame, 0, plainBarHeight, false, screen->visibleFrame.maxY()};
}

Rect NotchMetrics::frame(bool expanded, double contentHeight, double wingWidth) const {
    const double width = expanded ? expandedWidth : collapsedWidth(wingWidth);
    const double height =
        expanded ? std::clamp(contentHeight, leastContentHeight, mostContentHeight) + bottomMargin
                 : barHeight;
    return {screenFrame.midX() - width / 2, topY - height, width, height};
}

double NotchMetrics::collapsedWidth(double wingWidth) const {
    return std::max(leastCollapsedWidth, notchWidth + 2 * wingWidth);
}

} // namespace sallowmere
