// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/PanelHand.h"

#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace sallowmere {

namespace {

void collect(QQuickItem& item, const QString& name, std::vector<QQuickItem*>& found) {
    if (!item.isVisible()) {
        return;
    }
    if (item.objectName() == name) {
        found.push_back(&item);
    }
    for (QQuickItem* child : item.childItems()) {
        collect(*child, name, found);
    }
}

} // namespace

std::vector<QQuickItem*> PanelHand::all(const QString& name) const {
    std::vector<QQuickItem*> found;
    collect(*stage_.view().contentItem(), name, found);
    const auto key = [](const QQuickItem* item) {
        const QPointF corner = item->mapToScene({0, 0});
        return std::pair(corner.y(), corner.x());
    };
    std::stable_sort(found.begin(), found.end(),
                     [&](const auto* one, const auto* other) { return key(one) < key(other); });
    return found;
}

QQuickItem& PanelHand::find(const QString& name, std::size_t place) const {
    const std::vector<QQuickItem*> found = all(name);
    if (place >= found.size()) {
        throw std::out_of_range("the panel shows no " + name.toStdString());
    }
    return *found[place];
}

QString PanelHand::text(const QString& name, std::size_t place) const {
    return find(name, place).property("text").toString();
}

QPoint PanelHand::middle(const QQuickItem& item) {
    return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
}

QRectF PanelHand::place(const QQuickItem& item) {
    return item.mapRectToScene({0, 0, item.width(), item.height()});
}

void PanelHand::point(const QQuickItem& item) {
    QTest::mouseMove(&stage_.view(), middle(item));
    stage_.settle();
}

void PanelHand::click(const QQuickItem& item) {
    QTest::mouseClick(&stage_.view(), Qt::LeftButton, Qt::NoModifier, middle(item));
    stage_.settle();
}

void PanelHand::press(const QQuickItem& item) {
    QTest::mousePress(&stage_.view(), Qt::LeftButton, Qt::NoModifier, middle(item));
    stage_.settle();
}

void PanelHand::release(const QQuickItem& item) {
    QTest::mouseRelease(&stage_.view(), Qt::LeftButton, Qt::NoModifier, middle(item));
    stage_.settle();
}

void PanelHand::clickRight(QPoint place) {
    QTest::mouseClick(&stage_.view(), Qt::RightButton, Qt::NoModifier, place);
    stage_.settle();
}

void PanelHand::wheel(const QQuickItem& item, int points) {
    const QPointF place = middle(item);
    QWheelEvent event(place, stage_.view().mapToGlobal(place), {0, -points}, {0, -points},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&stage_.view(), &event);
    stage_.settle();
}

void PanelHand::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&stage_.view(), key, modifiers);
    stage_.settle();
}

void PanelHand::type(const char* text) {
    for (const char* letter = text; *letter != '\0'; ++letter) {
        QTest::keyClick(&stage_.view(), *letter);
    }
    stage_.settle();
}

bool PanelHand::waitFor(const std::function<bool()>& sign) const {
    return QTest::qWaitFor(sign, 20'000);
}

} // namespace sallowmere
