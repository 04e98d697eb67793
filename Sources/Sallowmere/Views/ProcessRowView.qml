// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// An assistant that runs outside the listed sessions.
Item {
    id: row

    required property processRow entry

    implicitHeight: 24

    Rectangle {
        id: dot

        anchors.left: parent.left
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: 6
        height: 6
        radius: 3
        color: Theme.accentGreen
    }
    PlainText {
        anchors.left: dot.right
        anchors.leftMargin: 8
        anchors.right: figures.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: row.entry.name
        elide: Text.ElideRight
    }
    Row {
        id: figures

        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        PlainText {
            text: row.entry.pid
            font.pointSize: Theme.footerSize
            color: Theme.textSecondary
        }
        PlainText {
            text: row.entry.cpu
            font.pointSize: Theme.footerSize
            color: Theme.textTertiary
        }
        PlainText {
            text: row.entry.elapsed
            font.pointSize: Theme.footerSize
            color: Theme.textTertiary
        }
    }
}
