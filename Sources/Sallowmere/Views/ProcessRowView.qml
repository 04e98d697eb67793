// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// An assistant that runs outside the listed sessions.
Item {
    id: row

    required property processRow entry

    objectName: "process"
    implicitHeight: 24

    Rectangle {
        id: dot

        x: 5
        anchors.verticalCenter: parent.verticalCenter
        width: 6
        height: 6
        radius: 3
        color: Theme.accentGreen
    }
    PlainText {
        objectName: "name"
        x: 20
        width: figures.x - x - 8
        anchors.verticalCenter: parent.verticalCenter
        text: row.entry.name
        elide: Text.ElideMiddle
    }
    Row {
        id: figures

        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        PlainText {
            objectName: "pid"
            text: row.entry.pid
            font.pointSize: Theme.footerSize
            color: Theme.textSecondary
        }
        Figures {
            objectName: "cpu"
            text: row.entry.cpu
            widest: "00%"
            horizontalAlignment: Text.AlignRight
            font.pointSize: Theme.footerSize
            color: Theme.textTertiary
        }
        Figures {
            objectName: "elapsed"
            text: row.entry.elapsed
            widest: "00h00m"
            horizontalAlignment: Text.AlignRight
            font.pointSize: Theme.footerSize
            color: Theme.textTertiary
        }
    }
}
