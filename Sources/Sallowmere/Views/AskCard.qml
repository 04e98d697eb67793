// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A question that a session asks, with its numbered options.
Card {
    id: card

    required property askRow entry
    required property PanelModel panel

    CardHeading {
        height: 20
        symbol: "bubble"
        text: "Claude asks"
        accent: Theme.accentCyan
    }
    PlainText {
        width: parent.width
        topPadding: 4
        bottomPadding: 4
        text: card.entry.question
        wrapMode: Text.Wrap
        maximumLineCount: 6
        elide: Text.ElideRight
        font.pointSize: Theme.titleSize
    }
    Repeater {
        model: card.entry.options

        PressArea {
            id: option

            required property string modelData
            required property int index

            width: parent.width
            implicitHeight: 36
            topInset: 4
            text: modelData
            help: card.entry.isTyped ? `Types ${index + 1} in the terminal` : "Jump to this session's terminal"
            baseColor: Theme.optionBackground
            hoverColor: Theme.grey(0.17)
            onClicked: card.panel.answer(card.entry.id, index + 1)

            contentItem: Item {
                Rectangle {
                    id: number

                    anchors.left: parent.left
                    anchors.leftMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    anchors.verticalCenterOffset: 2
                    width: Math.max(18, digits.implicitWidth + 8)
                    height: 18
                    radius: 5
                    color: Qt.alpha(Theme.accentCyan, 0.15)

                    PlainText {
                        id: digits

                        anchors.centerIn: parent
                        text: option.index + 1
                        font.pointSize: Theme.chipSize
                        font.weight: Font.DemiBold
                        color: Theme.accentCyan
                        Accessible.ignored: true
                    }
                }
                PlainText {
                    anchors.left: number.right
                    anchors.leftMargin: 10
                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: number.verticalCenter
                    text: option.modelData
                    elide: Text.ElideRight
                    font.pointSize: Theme.optionSize
                    Accessible.ignored: true
                }
            }
        }
    }
    PlainText {
        width: parent.width
        topPadding: 8
        text: card.entry.hint
        elide: Text.ElideRight
        font.pointSize: Theme.footerSize
        color: Theme.textTertiary
    }
}
