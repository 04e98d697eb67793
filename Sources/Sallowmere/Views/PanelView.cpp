// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/PanelView.h"

#include "Sallowmere/Views/ShadowProvider.h"
#include "Sallowmere/Views/SymbolProvider.h"

#include <QQmlEngine>
#include <QQuickItem>

// Of the module of the views; not called by anything else when that is linked statically.
extern void qml_register_types_Sallowmere(); // NOLINT(readability-identifier-naming)

namespace sallowmere {

PanelView::PanelView(PanelModel& model, const NotchMetrics& metrics, double wingWidth) {
    qml_register_types_Sallowmere();
    engine()->addImageProvider(QStringLiteral("symbols"), new SymbolProvider);
    engine()->addImageProvider(QStringLiteral("shadow"), new ShadowProvider);
    engine()->addImportPath(QStringLiteral(":/"));
    setColor(Qt::transparent);
    setResizeMode(SizeRootObjectToView);
    setInitialProperties({{QStringLiteral("panel"), QVariant::fromValue(&model)},
                          {QStringLiteral("wingWidth"), wingWidth},
                          {QStringLiteral("barHeight"), metrics.barHeight},
                          {QStringLiteral("hasNotch"), metrics.hasNotch}});
    setSource(QUrl(QStringLiteral("qrc:/Sallowmere/RootView.qml")));
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

void PanelView::clearFocus() {
    if (QQuickItem* item = activeFocusItem()) {
        item->setFocus(false);
    }
}

QRegion PanelView::opaqueShape() const {
    return QRect({}, size());
}

template <typename Singleton>
Singleton& PanelView::singleton(const char* name) {
    return *engine()->singletonInstance<Singleton*>(qmlTypeId("Sallowmere", 1, 0, name));
}

} // namespace sallowmere
