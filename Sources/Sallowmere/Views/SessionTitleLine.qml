// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// Status, title and project on the left; chip, badge and button in the columns that all rows share
/// on the right.
Item {
    id: line

    required property sessionRow entry
    required property bool isPrimary
    required property real inset
    signal jumpRequested()

    implicitHeight: 20

    StatusDot {
        objectName: "statusDot"
        anchors.verticalCenter: parent.verticalCenter
        status: line.entry.status
        Accessible.ignored: true
    }
    PlainText {
        id: title

        objectName: "title"
        x: line.inset
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, elements.x - x - 8)
        text: line.entry.title
        font.pointSize: line.isPrimary ? Theme.titleSize : Theme.optionSize
        font.weight: line.isPrimary ? Font.DemiBold : Font.Medium
        color: line.entry.status === "idle" && !line.isPrimary ? Theme.textSecondary
                                                               : Theme.textPrimary
        Accessible.ignored: true
    }
    PlainText {
        objectName: "project"
        anchors.left: title.right
        anchors.leftMargin: 8
        anchors.baseline: title.baseline
        width: Math.max(0, Math.min(implicitWidth, elements.x - x - 8))
        visible: line.isPrimary && (width >= implicitWidth || width > 32)
        text: line.entry.project
        elide: Text.ElideMiddle
        color: Theme.textSecondary
    }
    Row {
        id: elements

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        ProcessChip {
            objectName: "chip"
            anchors.verticalCenter: parent.verticalCenter
            visible: line.entry.hasProcess
            cpu: line.entry.cpu
            help: line.entry.processHelp
        }
        Item {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(widest.implicitWidth, badge.implicitWidth)
            height: badge.implicitHeight

            Badge {
                id: widest

                visible: false
                text: "Sonnet"
            }
            Badge {
                id: badge

                objectName: "badge"
                anchors.right: parent.right
                text: line.entry.badge
            }
        }
        JumpButton {
            objectName: "jump"
            anchors.verticalCenter: parent.verticalCenter
            onClicked: line.jumpRequested()
        }
    }
}
