// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// A row that glides from its old place in a column to its new one when the order has changed.
Item {
    id: row

    required property RowColumn column
    readonly property alias isGliding: glide.running
    /// Where it stood after the last layout; nowhere while it is new or hidden.
    property real place: NaN

    onYChanged: {
        if (column.isReordered && !isNaN(place)) {
            offset.y += place - y
            glide.restart()
        }
        place = y
    }

    transform: Translate {
        id: offset
    }
    NumberAnimation {
        id: glide

        target: offset
        property: "y"
        to: 0
        duration: Theme.fade
        easing.type: Easing.OutQuad
    }
    Connections {
        target: row.column

        function onPositioningComplete(): void {
            row.place = row.visible ? row.y : NaN
        }
    }
}
