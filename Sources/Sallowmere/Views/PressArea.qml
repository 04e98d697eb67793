// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic

/// What every control is made of: it lightens under the pointer, darkens while pressed, has a ring
/// while the keyboard is on it, says what it does after a while, and takes the keyboard from nobody
/// by a click.
AbstractButton {
    id: area

    /// What it is called. Not the button's own text, in which "&" makes a shortcut.
    property string caption
    /// What a click does, for people.
    property string help
    property int radius: Theme.controlRadius
    property color baseColor: "transparent"
    property color hoverColor: Theme.grey(0.17)
    property color pressedColor: Theme.grey(0.07)
    readonly property string wantedHelp: hovered && !pressed ? help : ""

    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: caption !== "" ? caption : help
    Accessible.description: help
    Accessible.onPressAction: clicked()
    onWantedHelpChanged: Help.say(area, wantedHelp)

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: area.radius
        color: area.down ? area.pressedColor : area.hovered ? area.hoverColor : area.baseColor
        border.width: area.visualFocus ? 1 : 0
        border.color: Theme.textSecondary

        Behavior on color {
            ColorAnimation {
                duration: Theme.fade
            }
        }
    }
}
