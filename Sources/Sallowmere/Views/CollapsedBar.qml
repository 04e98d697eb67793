// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// The thin bar: a wing on either side of the notch.
Item {
    id: collapsed

    required property PanelModel panel
    required property real wingWidth

    Item {
        objectName: "leftWing"
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: collapsed.wingWidth

        WorkingSpinner {
            objectName: "spinner"
            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            visible: collapsed.panel.bar.isWorking
        }
        Symbol {
            objectName: "restingSymbol"
            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            visible: !collapsed.panel.bar.isWorking
            name: "sparkle"
            size: 10
        }
    }
    Item {
        objectName: "rightWing"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: collapsed.wingWidth

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            spacing: 7

            Figures {
                objectName: "fiveHourPercent"
                horizontalAlignment: Text.AlignRight
                anchors.verticalCenter: parent.verticalCenter
                text: collapsed.panel.usage.fiveHour.percent
                font.weight: Font.DemiBold
                color: Theme.accent(collapsed.panel.usage.fiveHour.color, Theme.accentGreen)
            }
            ActivityBeacon {
                objectName: "beacon"
                anchors.verticalCenter: parent.verticalCenter
                bar: collapsed.panel.bar
            }
        }
    }
}
