// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/ShadowProvider.h"

#include <algorithm>
#include <cmath>

namespace sallowmere {

namespace {

constexpr double cornerRadius = 22;
constexpr double darkest = 0.55;
/// It falls below the panel rather than around it.
constexpr double drop = 4;

/// Points from the outline of a rectangle with round corners, negative within.
double distance(double x, double y, double halfWidth, double halfHeight) {
    const double dx = std::abs(x) - halfWidth + cornerRadius;
    const double dy = std::abs(y) - halfHeight + cornerRadius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0)
           - cornerRadius;
}

double darkness(double outside) {
    const double share = std::clamp(1 - outside / (ShadowProvider::reach - drop), 0.0, 1.0);
    return darkest * share * share;
}

} // namespace

QImage ShadowProvider::requestImage(const QString& /*id*/, QSize* size,
                                    const QSize& /*requestedSize*/) {
    constexpr int side = 2 * corner + 2;
    constexpr double half = side / 2.0 - reach;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double outside =
                distance(x + 0.5 - side / 2.0, y + 0.5 - side / 2.0 - drop, half, half);
            image.setPixel(x, y, qRgba(0, 0, 0, qRound(255 * darkness(std::max(outside, 0.0)))));
        }
    }
    *size = image.size();
    return image;
}

} // namespace sallowmere
