// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// How busy a session's process is.
Row {
    id: chip

    required property string cpu
    required property string help
    readonly property string wantedHelp: hover.hovered ? help : ""

    spacing: 3
    Accessible.role: Accessible.StaticText
    Accessible.name: cpu
    Accessible.description: help
    onWantedHelpChanged: Help.say(chip, wantedHelp)

    HoverHandler {
        id: hover
    }
    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: "bolt"
        size: 10
        color: Theme.accentOrange
    }
    Figures {
        objectName: "cpu"
        anchors.verticalCenter: parent.verticalCenter
        text: chip.cpu
        widest: "00%"
        horizontalAlignment: Text.AlignRight
        font.pointSize: Theme.chipSize
        color: Theme.textSecondary
        Accessible.ignored: true
    }
}
