// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// One answer: all of its row is the button. Number and label are texts of their own, so that no
/// label can move the number.
PressArea {
    id: option

    required property string modelData
    required property int index
    required property bool isTyped
    readonly property int number: index + 1
    /// No key types more than one digit.
    readonly property bool typesNumber: isTyped && number <= 9

    objectName: "option"
    implicitHeight: Math.max(32, label.implicitHeight + 14)
    caption: modelData
    help: typesNumber ? `Types ${number} in the terminal` : "Jump to this session's terminal"
    baseColor: Theme.optionBackground

    contentItem: Item {
        Rectangle {
            id: mark

            x: 8
            y: Math.round((Math.min(32, option.height) - height) / 2)
            width: Math.max(20, digits.implicitWidth + 8)
            height: 20
            radius: Theme.badgeRadius
            color: Qt.alpha(Theme.accentCyan, 0.15)

            PlainText {
                id: digits

                objectName: "number"
                anchors.centerIn: parent
                text: option.number
                font.pointSize: Theme.chipSize
                font.weight: Font.DemiBold
                color: Theme.accentCyan
                Accessible.ignored: true
            }
        }
        PlainText {
            id: label

            objectName: "optionLabel"
            anchors.left: mark.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: option.modelData
            wrapMode: Text.Wrap
            maximumLineCount: 3
            font.pointSize: Theme.optionSize
            Accessible.ignored: true
        }
    }
}
