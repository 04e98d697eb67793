// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A session that has just finished. All of it is one button.
PressArea {
    id: card

    required property completionRow entry
    required property PanelModel panel

    caption: entry.title
    help: "Jump to this session's terminal"
    radius: Theme.cardRadius
    baseColor: Theme.cardBackground
    hoverColor: Theme.grey(0.12)
    implicitHeight: 56
    onClicked: panel.jump(entry.id)

    contentItem: Item {
        Symbol {
            id: mark

            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "checkmark-circle"
            size: 16
            color: Theme.accentGreen
        }
        Column {
            anchors.left: mark.right
            anchors.leftMargin: 8
            anchors.right: arrow.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            PlainText {
                width: parent.width
                text: card.entry.title
                font.weight: Font.DemiBold
            }
            PlainText {
                width: parent.width
                text: "Finished — click to jump"
                color: Theme.textSecondary
            }
        }
        Symbol {
            id: arrow

            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow-up-right"
        }
    }
}
