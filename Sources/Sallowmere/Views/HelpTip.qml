// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The tooltip: below its control, or above where there is no room, and always within the panel.
Rectangle {
    id: tip

    readonly property real gap: 4
    readonly property real edge: 8
    property bool isDue: false

    function place(): void {
        const control = Help.owner
        const middle = control.mapToItem(parent, control.width / 2, 0)
        const below = middle.y + control.height + gap
        x = Math.round(Math.max(edge, Math.min(middle.x - width / 2, parent.width - width - edge)))
        y = Math.round(below + height + edge <= parent.height ? below : middle.y - gap - height)
    }

    objectName: "helpTip"
    width: words.width + 16
    height: words.height + 8
    radius: Theme.badgeRadius
    color: Theme.grey(0.14)
    border.width: 1
    border.color: Theme.grey(0.22)
    opacity: isDue ? 1 : 0
    visible: opacity > 0
    Accessible.ignored: true

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.fade
        }
    }
    Timer {
        id: delay

        interval: 600
        onTriggered: {
            words.text = Help.text
            tip.place()
            tip.isDue = true
        }
    }
    Connections {
        target: Help

        function onOwnerChanged(): void {
            tip.isDue = false
            delay.stop()
            if (Help.owner) {
                delay.start()
            }
        }
        function onTextChanged(): void {
            if (tip.isDue) {
                words.text = Help.text
                tip.place()
            }
        }
    }
    PlainText {
        id: words

        objectName: "helpWords"
        x: 8
        y: 4
        width: Math.min(implicitWidth, tip.parent.width - 2 * tip.edge - 16)
        font.pointSize: Theme.chipSize
        Accessible.ignored: true
    }
}
