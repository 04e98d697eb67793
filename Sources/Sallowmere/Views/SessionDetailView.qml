// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// One session in depth: what it did lately, a field to send it a prompt, and the way to its
/// terminal.
Item {
    id: detail

    required property sessionRow entry
    required property PanelModel panel

    function submit(): void {
        const text = field.text.trim()
        if (text === "") {
            return
        }
        const id = entry.id
        field.clear()
        field.focus = false
        panel.sendPrompt(id, text)
    }

    implicitHeight: column.implicitHeight + 16

    Rectangle {
        x: 20
        y: 0
        width: 2
        height: parent.height - 8
        color: Qt.alpha(Theme.status(detail.entry.status), 0.4)
    }
    Column {
        id: column

        x: 32
        y: 4
        width: parent.width - 36
        spacing: 8

        SessionLog {
            objectName: "log"
            width: parent.width
            model: detail.panel.log
        }
        Item {
            width: parent.width
            height: Math.max(bar.implicitHeight, terminal.height)

            Column {
                id: bar

                anchors.left: parent.left
                anchors.right: terminal.left
                anchors.rightMargin: 16
                y: (parent.height - height) / 2
                spacing: 4

                PlainText {
                    objectName: "activeNote"
                    width: parent.width
                    visible: detail.entry.hasProcess
                    text: "Session is active in the terminal — prompt it there"
                    font.pointSize: Theme.chipSize
                    color: Theme.textTertiary
                }
                Item {
                    width: parent.width
                    height: 32
                    visible: !detail.entry.hasProcess

                    PromptField {
                        id: field

                        anchors.fill: parent
                        isPrompting: detail.entry.isPrompting
                        onAccepted: detail.submit()
                    }
                }
                PlainText {
                    objectName: "promptState"
                    width: parent.width
                    visible: !detail.entry.hasProcess && text !== ""
                    text: detail.entry.promptError !== "" ? detail.entry.promptError
                        : detail.entry.isPrompting
                          ? "Running headlessly — response will appear as the active session" : ""
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    font.pointSize: Theme.footerSize
                    color: detail.entry.promptError !== "" ? Theme.red : Theme.textTertiary
                }
            }
            PressArea {
                id: terminal

                objectName: "terminal"
                anchors.right: parent.right
                // Beside the field rather than beside what is said below it.
                y: detail.entry.hasProcess ? (parent.height - height) / 2 : 2
                height: 28
                width: Math.min(implicitWidth, parent.width / 3)
                caption: detail.entry.terminal
                help: "Open this session's terminal window"
                horizontalPadding: 8
                onClicked: detail.panel.jump(detail.entry.id)

                contentItem: Row {
                    spacing: 4

                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "arrow-up-right"
                        size: 10
                    }
                    PlainText {
                        anchors.verticalCenter: parent.verticalCenter
                        width: Math.min(implicitWidth, 160)
                        text: terminal.caption
                        font.pointSize: Theme.chipSize
                        font.weight: Font.DemiBold
                        color: Theme.textSecondary
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
