// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// The list that hangs below the notch while the panel is expanded.
Item {
    id: expanded

    required property PanelModel panel
    /// Above the content: what the notch covers.
    required property real notchHeight
    readonly property real edge: 16
    readonly property real naturalHeight:
        notchHeight + header.height + list.implicitHeight + footer.height + 2 * 12 + 2 * 8

    readonly property Item focused: Window.activeFocusItem

    /// Scrolls until the control is seen, if it is one of the list's.
    function reveal(control: Item): void {
        let ancestor = control
        while (ancestor && ancestor !== list) {
            ancestor = ancestor.parent
        }
        if (ancestor) {
            const top = control.mapToItem(list, 0, 0).y
            const lowest = Math.min(top, scroll.contentY)
            scroll.contentY = Math.max(lowest, top + control.height - scroll.height)
        }
    }

    onFocusedChanged: reveal(focused)
    onVisibleChanged: {
        if (!visible) {
            menu.close()
            scroll.contentY = 0
        }
    }
    onNaturalHeightChanged: panel.setContentHeight(naturalHeight)
    Component.onCompleted: panel.setContentHeight(naturalHeight)

    SplitUsageHeader {
        id: header

        objectName: "header"
        x: expanded.edge
        y: expanded.notchHeight + 12
        width: parent.width - 2 * expanded.edge
        height: 24
        usage: expanded.panel.usage
        pinned: expanded.panel.pinned
    }
    Flickable {
        id: scroll

        objectName: "list"
        anchors.top: header.bottom
        anchors.topMargin: 8
        anchors.bottom: footer.top
        anchors.bottomMargin: 8
        x: expanded.edge
        width: parent.width - 2 * expanded.edge
        contentHeight: list.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: true
        ScrollBar.vertical: ThinScrollBar {
            // Beside the rows.
            parent: expanded
            x: expanded.width - width - 6
            y: scroll.y
            height: scroll.height
        }

        PanelList {
            id: list

            width: parent.width
            panel: expanded.panel
            onImplicitHeightChanged: panel.setListContentHeight(implicitHeight)
            Component.onCompleted: panel.setListContentHeight(implicitHeight)
        }
    }
    UsageFooter {
        id: footer

        objectName: "footer"
        x: expanded.edge
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        width: parent.width - 2 * expanded.edge
        height: 20
        text: expanded.panel.usage.footer
        onQuitRequested: expanded.panel.quit()
    }
    Item {
        // Above everything, text fields too, which would keep the click.
        anchors.fill: parent

        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: point => {
                Help.hush()
                menu.returnTo = expanded.focused
                menu.popup(point.position)
            }
        }
    }
    PanelMenu {
        id: menu

        panel: expanded.panel
    }
}
