// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/PanelStage.h"

#include <QPoint>
#include <QQuickItem>
#include <QString>

#include <functional>
#include <vector>

namespace sallowmere {

/// What a user sees of the panel and does there.
class PanelHand {
public:
    explicit PanelHand(PanelStage& stage) : stage_(stage) {}

    /// The items shown that have that name, from above to below and from left to right.
    std::vector<QQuickItem*> all(const QString& name) const;
    /// One of them; there must be so many.
    QQuickItem& find(const QString& name, std::size_t place = 0) const;
    bool has(const QString& name) const { return !all(name).empty(); }
    /// The text of an item shown, or of one within it.
    QString text(const QString& name, std::size_t place = 0) const;

    /// Of an item's middle in the window.
    static QPoint middle(const QQuickItem& item);
    /// Of an item in the window.
    static QRectF place(const QQuickItem& item);

    void point(const QQuickItem& item);
    void click(const QQuickItem& item);
    /// The button stays down until it is released.
    void press(const QQuickItem& item);
    void release(const QQuickItem& item);
    void clickRight(QPoint place);
    /// Turns the wheel so many points towards the end.
    void wheel(const QQuickItem& item, int points);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const char* text);

    /// Waits for it, for as long as a very slow machine may take; false when it never came.
    bool waitFor(const std::function<bool()>& sign) const;

private:
    PanelStage& stage_;
};

} // namespace sallowmere
