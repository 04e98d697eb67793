// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/SymbolProvider.h"

#include "Views/PanelScenes.h"
#include "Views/ViewTest.h"

#include <QDir>

#include <set>
#include <string>

namespace sallowmere {
namespace {

QImage drawn(const QString& name, const QString& color, QSize wanted) {
    SymbolProvider provider;
    QSize size;
    QImage image = provider.requestImage(name + u'?' + color, &size, wanted);
    EXPECT_EQ(size, image.size());
    return image;
}

int coveredPixels(const QImage& image) {
    int covered = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            covered += image.pixelColor(x, y).alpha() > 128 ? 1 : 0;
        }
    }
    return covered;
}

QStringList names() {
    QStringList found;
    for (const QString& file : QDir(QStringLiteral(":/symbols")).entryList()) {
        found.push_back(file.chopped(4));
    }
    return found;
}

TEST(Symbols, AreDrawnInTheirColorAndSize) {
    ASSERT_GE(names().size(), 11);
    for (const QString& name : names()) {
        for (const int side : {12, 15, 24}) {
            const QImage image = drawn(name, QStringLiteral("1,0.50196,0.25098,1"), {side, side});
            ASSERT_EQ(image.size(), QSize(side, side));
            EXPECT_GT(coveredPixels(image), side / 2) << utf8(name);
            EXPECT_LT(coveredPixels(image), side * side) << utf8(name);
            for (int x = 0; x < side; ++x) {
                const QColor color = image.pixelColor(x, side / 2);
                if (color.alpha() == 255) {
                    EXPECT_EQ(color, QColor(0xff, 0x80, 0x40)) << utf8(name);
                }
            }
        }
    }
}

TEST(Symbols, ThatAreUnknownAreEmpty) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    EXPECT_EQ(coveredPixels(drawn(QStringLiteral("none"), QStringLiteral("1,1,1,1"), {16, 16})), 0);
    EXPECT_EQ(coveredPixels(drawn(QStringLiteral("../x"), QStringLiteral("1,1,1,1"), {16, 16})), 0);
    qInstallMessageHandler(nullptr);
}

void collect(const QQuickItem& item, std::set<std::string>& shown) {
    const QString source = item.property("source").toUrl().toString();
    const QString prefix = QStringLiteral("image://symbols/");
    if (source.startsWith(prefix)) {
        shown.insert(utf8(source.mid(prefix.size()).section(u'?', 0, 0)));
    }
    for (const QQuickItem* child : item.childItems()) {
        collect(*child, shown);
    }
}

TEST(Symbols, ThatAreShownExistAndAllAreShown) {
    std::set<std::string> shown;
    for (const PanelScene& scene : PanelScene::all()) {
        if (scene.name == "everything-pinned" || scene.name == "plan" || scene.name == "detail") {
            PanelStage stage;
            scene.set(stage);
            collect(*stage.view().contentItem(), shown);
        }
    }
    const std::vector<std::string> drawings = utf8(names());
    EXPECT_EQ(shown, std::set<std::string>(drawings.begin(), drawings.end()));
}

} // namespace
} // namespace sallowmere
