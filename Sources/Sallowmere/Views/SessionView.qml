// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A session in the list: large for the first, one line for the others, and its details below it
/// while it is selected. What the user types there stays when the order changes.
Column {
    id: view

    required property sessionRow entry
    required property int index
    required property PanelModel panel
    readonly property bool isPrimary: index === 0
    readonly property bool isSelected: panel.selectedId === entry.id

    spacing: 0

    SessionRowView {
        width: parent.width
        entry: view.entry
        isPrimary: view.isPrimary
        panel: view.panel
    }
    Loader {
        width: parent.width
        active: view.isSelected
        visible: active

        sourceComponent: SessionDetailView {
            entry: view.entry
            panel: view.panel
        }
    }
}
