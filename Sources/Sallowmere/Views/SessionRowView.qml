// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// The line, or for the first session the lines, that sum a session up.
PressArea {
    id: row

    required property sessionRow entry
    required property bool isPrimary
    required property PanelModel panel

    text: entry.title
    help: ""
    Accessible.name: `${entry.title}, ${entry.status}`
    Accessible.description: entry.activity
    horizontalPadding: 4
    verticalPadding: isPrimary ? 8 : 6
    hoverColor: Theme.grey(0.07)
    onClicked: panel.toggleSelection(entry.id)

    contentItem: Column {
        spacing: 4

        Item {
            width: parent.width
            height: 20

            StatusDot {
                id: dot

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                status: row.entry.status
            }
            PlainText {
                id: title

                objectName: "title"
                anchors.left: dot.right
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, elements.x - x - 8)
                text: row.entry.title
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                font.pointSize: row.isPrimary ? Theme.titleSize : Theme.optionSize
                font.weight: row.isPrimary ? Font.DemiBold : Font.Medium
                color: row.entry.status === "idle" && !row.isPrimary ? Theme.textSecondary
                                                                     : Theme.textPrimary
                Accessible.ignored: true
            }
            PlainText {
                objectName: "project"
                anchors.left: title.right
                anchors.leftMargin: 8
                anchors.right: elements.left
                anchors.rightMargin: 8
                anchors.baseline: title.baseline
                visible: row.isPrimary && width > 24
                text: row.entry.project
                elide: Text.ElideMiddle
                horizontalAlignment: Text.AlignLeft
                color: Theme.textSecondary
            }
            Row {
                id: elements

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                ProcessChip {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: row.entry.hasProcess
                    cpu: row.entry.cpu
                    help: row.entry.processHelp
                }
                Badge {
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.entry.badge
                }
                JumpButton {
                    anchors.verticalCenter: parent.verticalCenter
                    onClicked: row.panel.jump(row.entry.id)
                }
            }
        }
        PlainText {
            objectName: "lastPrompt"
            x: 16
            width: parent.width - 16
            visible: row.isPrimary && text !== ""
            text: row.entry.lastPrompt
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.textSecondary
        }
        PlainText {
            objectName: "activity"
            x: 16
            width: parent.width - 16
            visible: row.isPrimary && text !== ""
            text: row.entry.activity
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.status(row.entry.status)
        }
        Item {
            x: 16
            width: parent.width - 16
            height: 16
            visible: row.isPrimary && row.entry.hasTodo

            ProgressBar {
                id: progress

                anchors.left: parent.left
                anchors.right: counts.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                value: row.entry.todoShare
                focusPolicy: Qt.NoFocus
                Accessible.name: row.entry.todoCounts

                background: Rectangle {
                    implicitHeight: 4
                    radius: 2
                    color: Theme.grey(0.15)
                }
                contentItem: Item {
                    implicitHeight: 4

                    Rectangle {
                        width: parent.width * progress.visualPosition
                        height: parent.height
                        radius: 2
                        color: Theme.accentBlue
                    }
                }
            }
            PlainText {
                id: counts

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: row.entry.todoCounts
                font.pointSize: Theme.footerSize
                color: Theme.textTertiary
            }
        }
    }
}
