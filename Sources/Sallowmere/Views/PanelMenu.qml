// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// What a click with the other mouse button offers.
Menu {
    id: menu

    required property PanelModel panel
    /// What has the focus again once the menu is closed.
    property Item returnTo: null

    padding: 4
    // Within the black ground, beyond which a screen may show nothing.
    topMargin: 4
    leftMargin: 26
    rightMargin: 26
    bottomMargin: 32

    onClosed: {
        if (returnTo && Keyboard.isHeld) {
            returnTo.forceActiveFocus()
        }
    }

    background: Rectangle {
        objectName: "menuGround"
        implicitWidth: 168
        radius: Theme.controlRadius
        color: Theme.grey(0.14)
        border.width: 1
        border.color: Theme.grey(0.22)
    }

    PanelMenuItem {
        objectName: "pinItem"
        text: menu.panel.pinned ? "Unpin" : "Pin open"
        onTriggered: menu.panel.togglePin()
    }
    MenuSeparator {
        padding: 4
        contentItem: Rectangle {
            implicitHeight: 1
            color: Theme.grey(0.22)
        }
    }
    PanelMenuItem {
        objectName: "quitItem"
        text: "Quit Sallowmere"
        onTriggered: menu.panel.quit()
    }

    component PanelMenuItem: MenuItem {
        id: item

        implicitHeight: 28
        font.pointSize: Theme.bodySize
        contentItem: PlainText {
            leftPadding: 8
            text: item.text
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: Theme.badgeRadius
            color: item.highlighted ? Theme.grey(0.24) : "transparent"
        }
    }
}
