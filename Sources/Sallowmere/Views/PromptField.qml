// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// Where a prompt is typed. Only a press into it, or what stands for one, asks for the keyboard.
TextField {
    id: field

    required property bool isPrompting

    objectName: "prompt"
    enabled: !isPrompting
    placeholderText: "Prompt this session…"
    placeholderTextColor: Theme.textTertiary
    color: Theme.textPrimary
    selectionColor: Qt.alpha(Theme.accentBlue, 0.5)
    selectedTextColor: color
    selectByMouse: true
    font.pointSize: Theme.optionSize
    padding: 8
    rightPadding: 36
    Accessible.name: placeholderText
    Accessible.onPressAction: forceActiveFocus()
    onPressed: event => {
        if (event.button === Qt.LeftButton) {
            // Before the keyboard comes, which by itself it would be only when the button goes up.
            forceActiveFocus(Qt.MouseFocusReason)
            Keyboard.take()
        }
    }
    onFocusChanged: {
        if (focus && !Keyboard.isHeld) {
            Keyboard.take()
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.fieldBackground
        border.width: field.activeFocus ? 1 : 0
        border.color: Qt.alpha(Theme.accentBlue, 0.6)
    }

    SymbolButton {
        objectName: "send"
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        visible: !field.isPrompting
        enabled: field.text !== ""
        symbol: "arrow-up-circle"
        symbolSize: 16
        symbolColor: enabled ? Theme.textPrimary : Theme.textTertiary
        help: "Send"
        onClicked: field.accepted()
    }
    WorkingSpinner {
        objectName: "sending"
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        visible: field.isPrompting
    }
}
