// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// What a session did lately, the oldest first.
Column {
    id: log

    required property KeyedListModel model

    spacing: 2

    PlainText {
        objectName: "noLog"
        visible: rows.count === 0
        text: "No recent activity"
        font.pointSize: Theme.chipSize
        color: Theme.textTertiary
    }
    Repeater {
        id: rows

        model: log.model

        Item {
            id: row

            required property logRow entry

            width: log.width
            implicitHeight: label.implicitHeight

            Rectangle {
                objectName: "logDot"
                x: 4.5
                y: (firstLine.height - height) / 2
                width: 5
                height: 5
                radius: 2.5
                color: row.entry.isProse ? Theme.accentGreen : Theme.textTertiary
            }
            TextMetrics {
                id: firstLine

                font: label.font
                text: "X"
            }
            PlainText {
                id: label

                objectName: "logLabel"
                x: 18
                width: parent.width - 18
                text: row.entry.label
                wrapMode: Text.Wrap
                maximumLineCount: 2
                font.family: Theme.monospace
                font.pointSize: Theme.logSize
                font.weight: row.entry.isProse ? Font.Medium : Font.Normal
                color: row.entry.isProse ? Theme.textPrimary : Theme.textSecondary
            }
        }
    }
}
