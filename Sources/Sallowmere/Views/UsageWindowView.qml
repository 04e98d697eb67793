// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// One allowance: its name, how much of it is used, and when it starts anew.
Row {
    id: view

    required property usageWindowRow window
    property bool showReset: false
    property bool compact: false
    /// A colour of its own, or none.
    property color tint: "transparent"
    readonly property bool hasTint: tint.a > 0
    readonly property real textSize: compact ? Theme.chipSize : Theme.bodySize

    spacing: 4

    PlainText {
        objectName: "label"
        width: Math.min(implicitWidth, 120)
        text: view.window.label
        font.pointSize: view.textSize
        font.bold: true
        color: view.hasTint ? view.tint : Theme.textPrimary
    }
    Figures {
        objectName: "percent"
        text: view.window.percent
        font.pointSize: view.textSize
        font.weight: Font.DemiBold
        color: Theme.accent(view.window.color, view.tint)
    }
    Figures {
        objectName: "reset"
        visible: view.showReset && text !== ""
        text: view.window.reset
        font.pointSize: view.textSize
        color: Theme.textTertiary
    }
}
