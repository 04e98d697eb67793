// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/PanelView.h"

#include "Sallowmere/Views/ShadowProvider.h"
#include "Sallowmere/Views/SymbolProvider.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QtMath>

#include <cmath>

// Of the module of the views; not called by anything else when that is linked statically.
extern void qml_register_types_Sallowmere(); // NOLINT(readability-identifier-naming)
#ifdef SALLOWMERE_COMPILED_VIEWS
// Without them each start would compile the views, and leave the result in the user's cache.
extern int qInitResources_qmlcache_sallowmere_views(); // NOLINT(readability-identifier-naming)
#endif

namespace sallowmere {

namespace {

/// Points that a round corner leaves free, if only in part, beside a row so far above its foot.
int freeBeside(double aboveFoot, double radius) {
    const double fromCenter = radius - aboveFoot;
    return qCeil(radius - std::sqrt(radius * radius - fromCenter * fromCenter));
}

} // namespace

PanelView::PanelView(PanelModel& model, const NotchMetrics& metrics, double wingWidth) {
    qml_register_types_Sallowmere();
#ifdef SALLOWMERE_COMPILED_VIEWS
    qInitResources_qmlcache_sallowmere_views();
#endif
    engine()->addImageProvider(QStringLiteral("symbols"), new SymbolProvider);
    engine()->addImageProvider(QStringLiteral("shadow"), new ShadowProvider);
    engine()->addImportPath(QStringLiteral(":/"));
    setTitle(QStringLiteral("Sallowmere"));
    setColor(Qt::transparent);
    setResizeMode(SizeRootObjectToView);
    setInitialProperties({{QStringLiteral("panel"), QVariant::fromValue(&model)},
                          {QStringLiteral("wingWidth"), wingWidth},
                          {QStringLiteral("barHeight"), metrics.barHeight},
                          {QStringLiteral("hasNotch"), metrics.hasNotch}});
    setSource(QUrl(QStringLiteral("qrc:/Sallowmere/RootView.qml")));
    // The bar is not kept waiting for it.
    const auto prepare = [this] { rootObject()->setProperty("isPrepared", true); };
    connect(this, &QQuickWindow::frameSwapped, this, prepare,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void PanelView::setMetrics(const NotchMetrics& metrics) {
    rootObject()->setProperty("barHeight", metrics.barHeight);
    rootObject()->setProperty("hasNotch", metrics.hasNotch);
}

void PanelView::setMotionWanted(bool wanted) {
    singleton<Motion>("Motion").setWanted(wanted);
}

Keyboard& PanelView::keyboard() {
    return singleton<Keyboard>("Keyboard");
}

bool PanelView::hasFocusedControl() const {
    const QQuickItem* item = contentItem();
    while (item != nullptr && item->isFocusScope()) {
        item = item->scopedFocusItem();
    }
    return item != nullptr && item->activeFocusOnTab();
}

void PanelView::clearFocus() {
    rootObject()->forceActiveFocus();
}

QRegion PanelView::opaqueShape() const {
    const auto* ground = rootObject()->findChild<QQuickItem*>(QStringLiteral("ground"));
    const QRect whole = ground->mapRectToScene(ground->boundingRect()).toRect();
    const int radius = qCeil(ground->property("lowerRadius").toDouble());
    QRegion shape(whole.adjusted(0, 0, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        const int free = freeBeside(row, radius);
        shape += QRect(whole.left() + free, whole.bottom() - row, whole.width() - 2 * free, 1);
    }
    return shape;
}

template <typename Singleton>
Singleton& PanelView::singleton(const char* name) {
    return *engine()->singletonInstance<Singleton*>(qmlTypeId("Sallowmere", 1, 0, name));
}

} // namespace sallowmere
