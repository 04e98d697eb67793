// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// panel-screenshots DIRECTORY
// Draws every state of the panel into a PNG file there, on a ground that shows what is transparent.
#include "Views/PanelScenes.h"

#include <QColor>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace {

using namespace sallowmere;

const QColor desktop(0x8a, 0x8f, 0xa8);
const Rect screen{0, 0, 1512, 982};

NotchMetrics metrics(bool hasNotch) {
    return hasNotch ? NotchMetrics{screen, 185, 32, true, screen.maxY()}
                    : NotchMetrics{screen, 0, NotchMetrics::plainBarHeight, false, screen.maxY()};
}

QImage onDesktop(const QImage& panel) {
    QImage picture(panel.size() + QSize(40, 20) * panel.devicePixelRatio(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(panel.devicePixelRatio());
    picture.fill(desktop);
    QPainter(&picture).drawImage(QPoint(20, 0), panel);
    return picture;
}

} // namespace

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments[1])) {
        std::fputs("usage: panel-screenshots DIRECTORY\n", stderr);
        return 2;
    }
    for (const PanelScene& scene : PanelScene::all()) {
        PanelStage stage(metrics(scene.hasNotch));
        // A window that draws itself in software has no alpha channel to grab.
        stage.view().setColor(desktop);
        scene.set(stage);
        stage.settle();
        const QImage panel = stage.view().grabWindow();
        const QString path =
            QStringLiteral("%1/%2.png").arg(arguments[1], QString::fromStdString(scene.name));
        if (!onDesktop(panel).save(path)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
