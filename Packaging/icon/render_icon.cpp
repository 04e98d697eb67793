// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// render-icon SVG PIXELS PNG: draws a picture as a square of so many pixels.
#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

namespace sallowmere {
namespace {

bool render(const QString& source, int pixels, const QString& target) {
    QSvgRenderer picture(source);
    if (!picture.isValid() || pixels <= 0) {
        return false;
    }
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.render(&painter);
    painter.end();
    return image.save(target, "PNG");
}

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: render-icon SVG PIXELS PNG\n", stderr);
        return 2;
    }
    if (!sallowmere::render(QString::fromLocal8Bit(argv[1]), QByteArray(argv[2]).toInt(),
                            QString::fromLocal8Bit(argv[3]))) {
        std::fprintf(stderr, "render-icon: cannot draw %s\n", argv[1]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
