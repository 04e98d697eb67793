// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// The usage line at the top of the expanded panel.
Item {
    id: header

    required property usageRow usage
    required property bool pinned

    implicitHeight: 24

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "sparkle"
            color: Theme.accentOrange
        }
        UsageWindowView {
            objectName: "fiveHour"
            window: header.usage.fiveHour
            showReset: true
        }
    }
    Row {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        UsageWindowView {
            objectName: "weekly"
            window: header.usage.weekly
        }
        Figures {
            objectName: "weeklyReset"
            visible: text !== ""
            text: header.usage.weekly.reset
            color: Theme.textTertiary
        }
        UsageWindowView {
            objectName: "family"
            visible: header.usage.hasFamily
            leftPadding: 8
            window: header.usage.family
            tint: Theme.accentPurple
        }
        Symbol {
            objectName: "pin"
            anchors.verticalCenter: parent.verticalCenter
            visible: header.pinned
            name: "pin"
            size: 10
            color: Theme.textTertiary
        }
    }
}
