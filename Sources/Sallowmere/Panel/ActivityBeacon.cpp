// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/ActivityBeacon.h"

namespace sallowmere {

ActivityBeacon::Color ActivityBeacon::color() const {
    if (waiting >= 1) {
        return Color::cyan;
    }
    return working < 1 ? Color::green : Color::blue;
}

QString ActivityBeacon::toolTip() const {
    if (waiting >= 1) {
        return QString::number(waiting) + QStringLiteral(" session(s) waiting for you");
    }
    if (working >= 1) {
        return QString::number(working) + QStringLiteral(" session(s) working");
    }
    return QString::number(completed) + QStringLiteral(" session(s) finished");
}

} // namespace sallowmere
