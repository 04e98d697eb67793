// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqml.h>

namespace sallowmere {

/// Whether the panel has the keyboard. It has it only when it asked for it: a click anywhere else
/// in the panel leaves the keyboard with the application that has it.
class Keyboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isHeld READ isHeld NOTIFY isHeldChanged)

public:
    bool isHeld() const { return isHeld_; }
    void setHeld(bool held);

    /// For the views: asks for it.
    Q_INVOKABLE void take();

signals:
    void isHeldChanged();
    void wanted();

private:
    bool isHeld_ = false;
};

} // namespace sallowmere
