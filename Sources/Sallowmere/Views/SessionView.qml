// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A session in the list: large for the first, one line for the others, and its details below it
/// while it is selected. What the user types there stays when the order changes.
ListRow {
    id: view

    required property sessionRow entry
    required property int index
    required property PanelModel panel
    readonly property bool isPrimary: index === 0
    readonly property bool isSelected: panel.selectedId === entry.id
    /// Below the first, which is larger than the others.
    readonly property real lineSpace: index === 1 ? 9 : 0

    objectName: "session"
    height: lineSpace + row.implicitHeight + details.height

    Rectangle {
        objectName: "line"
        y: 4
        width: parent.width
        height: 1
        visible: view.index === 1
        color: Theme.separator
    }
    SessionRowView {
        id: row

        objectName: "row"
        y: view.lineSpace
        width: parent.width
        entry: view.entry
        isPrimary: view.isPrimary
        panel: view.panel
    }
    Loader {
        id: details

        y: view.lineSpace + row.implicitHeight
        width: parent.width
        height: active ? implicitHeight : 0
        active: view.isSelected

        sourceComponent: SessionDetailView {
            entry: view.entry
            panel: view.panel
        }
    }
}
