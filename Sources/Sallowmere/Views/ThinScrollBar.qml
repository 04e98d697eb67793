// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic

/// Tells that there is more, and how much.
ScrollBar {
    id: bar

    padding: 0
    minimumSize: 0.08
    policy: ScrollBar.AsNeeded
    visible: size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 4
        implicitHeight: 4
        radius: 2
        color: bar.pressed || bar.hovered ? Theme.grey(0.4) : Theme.grey(0.24)
    }
}
