// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// All that the panel's window shows: the thin bar, or the list that hangs from it. Here it is
/// decided whether the user is typing.
Item {
    id: root

    required property PanelModel panel
    required property real wingWidth
    required property real barHeight
    required property bool hasNotch
    readonly property real sideMargin: 22
    readonly property real bottomMargin: 28
    readonly property real listWidth: 620
    /// Whether the list is there before it is shown, and stays after it: the panel opens at once
    /// then.
    property bool isPrepared: false
    readonly property Item focused: Window.activeFocusItem
    /// The keyboard is on a control, or on the open menu, which is none of ours to the window.
    readonly property bool isTyping: Keyboard.isHeld && focused !== null && focused.visible
                                     && (focused.activeFocusOnTab || !holds(focused))

    function holds(item: Item): bool {
        let ancestor = item
        while (ancestor && ancestor !== root) {
            ancestor = ancestor.parent
        }
        return ancestor === root || item === Window.contentItem
    }

    function tellTyping(): void {
        panel.setEditingPrompt(isTyping)
    }

    function leaveControls(): void {
        forceActiveFocus()
    }

    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: "Sallowmere"
    Keys.onEscapePressed: leaveControls()
    onIsTypingChanged: {
        if (isTyping) {
            tellTyping()
        } else {
            // Whoever hears of it moves the focus, which is on its way just now.
            Qt.callLater(tellTyping)
        }
    }

    Connections {
        target: Keyboard

        function onIsHeldChanged(): void {
            if (!Keyboard.isHeld) {
                root.leaveControls()
            }
        }
    }
    PanelGround {
        id: ground

        objectName: "ground"
        x: root.panel.expanded ? root.sideMargin : 0
        width: root.width - 2 * x
        height: root.height - (root.panel.expanded ? root.bottomMargin : 0)
        lowerRadius: root.panel.expanded ? Theme.panelRadius : 10
        hasShadow: root.panel.expanded

        Item {
            anchors.fill: parent
            clip: true

            Loader {
                anchors.fill: parent
                visible: !root.panel.expanded
                sourceComponent: collapsed
            }
            Loader {
                id: list

                // As wide as it is going to be, so that nothing in it moves while the panel grows.
                anchors.horizontalCenter: parent.horizontalCenter
                width: root.listWidth
                height: parent.height
                visible: root.panel.expanded
                active: root.isPrepared || visible
                sourceComponent: expanded
            }
        }
        HelpTip {
        }
    }
    Component {
        id: collapsed

        CollapsedBar {
            panel: root.panel
            wingWidth: root.wingWidth
        }
    }
    Component {
        id: expanded

        ExpandedPanel {
            panel: root.panel
            notchHeight: root.hasNotch ? root.barHeight : 0
        }
    }
}
