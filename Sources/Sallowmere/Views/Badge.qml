// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// A small rounded label.
Rectangle {
    property alias text: label.text

    implicitWidth: label.width + 16
    implicitHeight: label.implicitHeight + 6
    radius: Theme.badgeRadius
    color: Theme.badgeBackground

    PlainText {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 96)
        font.pointSize: Theme.chipSize
        font.weight: Font.Medium
        color: Theme.textSecondary
    }
}
