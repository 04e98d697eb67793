// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The black shape that everything stands on, flat above and rounded below.
Item {
    id: ground

    required property real lowerRadius
    required property bool hasShadow

    BorderImage {
        anchors.fill: parent
        anchors.margins: -28
        visible: ground.hasShadow
        source: "image://shadow/panel"
        border {
            left: 56
            top: 56
            right: 56
            bottom: 56
        }
        Accessible.ignored: true
    }
    Item {
        anchors.fill: parent
        clip: true

        Rectangle {
            y: -radius
            width: parent.width
            height: parent.height + radius
            radius: ground.lowerRadius
            color: Theme.background
            antialiasing: true
        }
    }
}
