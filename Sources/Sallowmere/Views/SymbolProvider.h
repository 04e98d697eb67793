// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickImageProvider>

namespace sallowmere {

/// Our drawings in any colour and size, for the views: "image://symbols/NAME?R,G,B,A", with the
/// components of the colour from 0 to 1. They are drawn anew for each scale of a screen and so are
/// crisp on all of them. An unknown name gives an empty image.
class SymbolProvider : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace sallowmere
