// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqml.h>

namespace sallowmere {

/// Whether things may move for ever: not where the user's desktop asks for reduced motion.
class Motion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isWanted READ isWanted NOTIFY isWantedChanged)

public:
    bool isWanted() const { return isWanted_; }
    void setWanted(bool wanted);

signals:
    void isWantedChanged();

private:
    bool isWanted_ = true;
};

} // namespace sallowmere
