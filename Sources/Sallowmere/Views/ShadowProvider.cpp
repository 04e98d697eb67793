// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/ShadowProvider.h"

#include <algorithm>
#include <cmath>

namespace sallowmere {

namespace {

constexpr int width = 2 * ShadowProvider::corner + 2;
constexpr int height = ShadowProvider::corner + 2;
constexpr double cornerRadius = 22;
constexpr double darkest = 0.7;
/// How far within the outline it is at its darkest.
constexpr double depth = 14;

/// Points from the panel as it would hang `drop` lower, negative within.
double distance(double x, double y) {
    const double dx = std::abs(x - width / 2.0) - (width / 2.0 - ShadowProvider::reach);
    const double dy = y - (height - ShadowProvider::reach);
    const double cornerX = dx + cornerRadius;
    const double cornerY = dy + cornerRadius;
    return std::hypot(std::max(cornerX, 0.0), std::max(cornerY, 0.0))
           + std::min(std::max(cornerX, cornerY), 0.0) - cornerRadius;
}

double darkness(double outside) {
    constexpr double reach = ShadowProvider::reach;
    const double share = std::clamp((reach - outside) / (reach + depth), 0.0, 1.0);
    return darkest * share * share * (3 - 2 * share);
}

} // namespace

QImage ShadowProvider::requestImage(const QString& /*id*/, QSize* size,
                                    const QSize& /*requestedSize*/) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double outside = distance(x + 0.5, y + 0.5);
            image.setPixel(x, y, qRgba(0, 0, 0, qRound(255 * darkness(outside))));
        }
    }
    *size = image.size();
    return image;
}

} // namespace sallowmere
