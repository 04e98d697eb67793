// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/SymbolProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace sallowmere {

namespace {

constexpr QSize usualSize(16, 16);

/// Of red, green, blue and opacity, each from 0 to 1, with commas between them.
QColor color(QStringView components) {
    const QList<QStringView> values = components.split(u',');
    return values.size() == 4 ? QColor::fromRgbF(values[0].toFloat(), values[1].toFloat(),
                                                 values[2].toFloat(), values[3].toFloat())
                              : QColor();
}

} // namespace

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype mark = id.indexOf(u'?');
    QSvgRenderer drawing(QStringLiteral(":/symbols/%1.svg").arg(id.left(mark)));
    QImage image(requestedSize.isValid() ? requestedSize : usualSize,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    // The drawings are white: only where they cover counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color(QStringView(id).mid(mark + 1)));
    painter.end();
    *size = image.size();
    return image;
}

} // namespace sallowmere
