// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickImageProvider>

namespace sallowmere {

/// The soft shadow of the expanded panel, "image://shadow/panel", as a picture whose corners are
/// kept and whose sides are stretched: it is drawn once, where an effect would be drawn for every
/// frame. `reach` points of it lie outside the panel on each side.
class ShadowProvider : public QQuickImageProvider {
public:
    static constexpr int reach = 28;
    /// Points from each side of the picture that are not stretched.
    static constexpr int corner = 56;

    ShadowProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace sallowmere
