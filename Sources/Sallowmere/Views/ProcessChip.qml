// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic

/// How busy a session's process is.
Row {
    id: chip

    required property string cpu
    required property string help

    spacing: 3
    ToolTip.text: help
    ToolTip.visible: hover.hovered
    ToolTip.delay: 600

    HoverHandler {
        id: hover
    }
    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: "bolt"
        size: 9
        color: Theme.accentOrange
    }
    PlainText {
        text: chip.cpu
        font.pointSize: Theme.chipSize
        color: Theme.textSecondary
        Accessible.description: chip.help
    }
}
