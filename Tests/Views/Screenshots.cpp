// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// panel-screenshots DIRECTORY
// Draws every state of the panel into a PNG file there, on a ground that shows what is transparent,
// and two of them once more with numbers at what is explained elsewhere.
#include "Views/PanelHand.h"
#include "Views/PanelScenes.h"

#include <QColor>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace sallowmere;

const QColor desktop(0x8a, 0x8f, 0xa8);
const Rect screen{0, 0, 1512, 982};

NotchMetrics metrics(bool hasNotch) {
    return hasNotch ? NotchMetrics{screen, 185, 32, true, screen.maxY()}
                    : NotchMetrics{screen, 0, NotchMetrics::plainBarHeight, false, screen.maxY()};
}

/// Pixels of the desktop beside the panel.
constexpr int margin = 20;

QImage onDesktop(const QImage& panel) {
    QImage picture(panel.size() + QSize(2 * margin, 2 * margin), QImage::Format_RGB32);
    picture.fill(desktop);
    QPainter(&picture).drawImage(QPoint(margin, 0), panel);
    return picture;
}

/// What is explained in a scene, in the order of its numbers.
const std::map<std::string, std::vector<const char*>> explained{
    {"collapsed-waiting", {"spinner", "fiveHourPercent", "beacon"}},
    {"everything-pinned",
     {"fiveHour", "weekly", "family", "pin", "completionCard", "approveCard", "dismiss", "askCard",
      "number", "statusDot", "project", "chip", "badge", "jump", "activity", "counts", "footerText",
      "quit"}}};

/// A number in a disc at the upper left corner of each item of the open panel, or below the bar.
void number(QImage& picture, PanelStage& stage, const std::vector<const char*>& names) {
    constexpr double diameter = 15;
    const PanelHand hand(stage);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = (picture.width() - 2 * margin) / stage.view().width();
    QFont font = painter.font();
    font.setPixelSize(10);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.translate(margin, 0);
    painter.scale(scale, scale);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const QRectF place = PanelHand::place(hand.find(QString::fromUtf8(names[i])));
        QRectF disc(0, 0, diameter, diameter);
        disc.moveCenter(
            stage.model().expanded()
                ? place.topLeft() - QPointF(7, 5)
                : QPointF(place.center().x(), stage.view().height() + diameter / 2 + 1));
        painter.setBrush(QColor(0xFF, 0xE0, 0x66));
        painter.drawEllipse(disc);
        painter.drawText(disc, Qt::AlignCenter, QString::number(i + 1));
    }
}

bool save(const QImage& picture, const QString& directory, const std::string& name) {
    const QString path = QStringLiteral("%1/%2.png").arg(directory, QString::fromStdString(name));
    const bool isSaved = picture.save(path);
    if (!isSaved) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    }
    return isSaved;
}

bool draw(const PanelScene& scene, const QString& directory) {
    PanelStage stage(metrics(scene.hasNotch));
    // A window that draws itself in software has no alpha channel to grab.
    stage.view().setColor(desktop);
    scene.set(stage);
    stage.settle();
    QImage picture = onDesktop(stage.view().grabWindow());
    if (!save(picture, directory, scene.name)) {
        return false;
    }
    const auto names = explained.find(scene.name);
    if (names == explained.end()) {
        return true;
    }
    number(picture, stage, names->second);
    return save(picture, directory, scene.name + "-explained");
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
    const std::vector<PanelScene> scenes = PanelScene::all();
    const bool isDrawn = std::all_of(scenes.begin(), scenes.end(), [&](const PanelScene& scene) {
        return draw(scene, arguments[1]);
    });
    return isDrawn ? 0 : 1;
}
