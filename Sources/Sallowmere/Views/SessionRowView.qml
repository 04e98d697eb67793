// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// The line, or for the first session the lines, that sum a session up.
PressArea {
    id: row

    required property sessionRow entry
    required property bool isPrimary
    required property PanelModel panel
    /// Where the title begins.
    readonly property real inset: 16

    caption: entry.title
    Accessible.name: `${entry.title}, ${entry.status}`
    Accessible.description: entry.activity
    horizontalPadding: 4
    verticalPadding: isPrimary ? 8 : 6
    hoverColor: Theme.grey(0.07)
    onClicked: panel.toggleSelection(entry.id)

    contentItem: Column {
        spacing: 4

        SessionTitleLine {
            width: parent.width
            entry: row.entry
            isPrimary: row.isPrimary
            inset: row.inset
            onJumpRequested: row.panel.jump(row.entry.id)
        }
        PlainText {
            objectName: "lastPrompt"
            x: row.inset
            width: parent.width - x
            visible: row.isPrimary && text !== ""
            text: row.entry.lastPrompt
            color: Theme.textSecondary
        }
        PlainText {
            objectName: "activity"
            x: row.inset
            width: parent.width - x
            visible: row.isPrimary && text !== ""
            text: row.entry.activity
            color: Theme.status(row.entry.status)
        }
        TodoBar {
            x: row.inset
            width: parent.width - x
            visible: row.isPrimary && row.entry.hasTodo
            share: row.entry.todoShare
            counts: row.entry.todoCounts
        }
    }
}
