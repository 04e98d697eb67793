// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A permission that a session asks for.
Card {
    id: card

    required property approvalRow entry
    required property PanelModel panel

    Item {
        width: parent.width
        height: 20

        CardHeading {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "shield"
            text: "Permission"
            accent: Theme.accentOrange
            textColor: Theme.textPrimary
        }
        SymbolButton {
            objectName: "dismiss"
            anchors.right: parent.right
            anchors.rightMargin: -5
            anchors.verticalCenter: parent.verticalCenter
            symbol: "xmark"
            symbolSize: 10
            symbolColor: Theme.textTertiary
            help: "Dismiss"
            onClicked: card.panel.dismiss(card.entry.id)
        }
    }
    PlainText {
        objectName: "message"
        width: parent.width
        topPadding: 4
        bottomPadding: 12
        text: card.entry.message
        wrapMode: Text.Wrap
        maximumLineCount: 12
        color: Theme.textSecondary
    }
    Row {
        spacing: 8

        AnswerButton {
            caption: "Allow"
            option: 1
            accent: Theme.accentGreen
        }
        AnswerButton {
            caption: "Always"
            option: 2
            accent: Theme.accentBlue
        }
        AnswerButton {
            caption: "Deny"
            option: 3
            accent: "white"
        }
    }

    component AnswerButton: PressArea {
        id: button

        required property int option
        required property color accent

        implicitWidth: label.implicitWidth + 28
        implicitHeight: 28
        objectName: `answer${option}`
        help: card.entry.isTyped ? `Types ${option} in the terminal` : "Jump to this session's terminal"
        baseColor: Qt.alpha(accent, 0.15)
        hoverColor: Qt.alpha(accent, 0.23)
        pressedColor: Qt.alpha(accent, 0.08)
        onClicked: card.panel.respond(card.entry.id, option)

        contentItem: PlainText {
            id: label

            text: button.caption
            horizontalAlignment: Text.AlignHCenter
            font.weight: Font.DemiBold
            color: button.accent
            Accessible.ignored: true
        }
    }
}
