// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickImageProvider>

namespace sallowmere {

/// The soft shadow of the expanded panel, "image://shadow/panel", as a picture whose corners are
/// kept and whose sides are stretched: it is drawn once, where an effect would be drawn for every
/// frame. The panel hangs from the upper edge, so that there is none above it. `reach` points of it
/// lie outside the panel on either side, `reach` and `drop` below.
class ShadowProvider : public QQuickImageProvider {
public:
    static constexpr int reach = 22;
    /// It falls below the panel rather than around it.
    static constexpr int drop = 6;
    /// Points from the sides of the picture, and from below, that are not stretched.
    static constexpr int corner = 50;

    ShadowProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace sallowmere
