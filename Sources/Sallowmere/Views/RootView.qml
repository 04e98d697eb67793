// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// All that the panel's window shows: the thin bar, or the list that hangs from it.
Item {
    id: root

    required property PanelModel panel
    required property real wingWidth
    required property real barHeight
    required property bool hasNotch
    readonly property real sideMargin: 22
    readonly property real bottomMargin: 28

    PanelGround {
        objectName: "ground"
        x: root.panel.expanded ? root.sideMargin : 0
        width: root.width - 2 * x
        height: root.height - (root.panel.expanded ? root.bottomMargin : 0)
        lowerRadius: root.panel.expanded ? Theme.panelRadius : 10
        hasShadow: root.panel.expanded

        Loader {
            anchors.fill: parent
            sourceComponent: root.panel.expanded ? expanded : collapsed
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
