// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The black shape that everything stands on, flat above, where it hangs, and rounded below.
Item {
    id: ground

    required property real lowerRadius
    required property bool hasShadow
    /// How far the shadow reaches, and how much further below.
    readonly property real reach: 22
    readonly property real drop: 6

    BorderImage {
        objectName: "shadow"
        anchors.fill: parent
        anchors.leftMargin: -ground.reach
        anchors.rightMargin: -ground.reach
        anchors.bottomMargin: -ground.reach - ground.drop
        visible: ground.hasShadow
        source: ground.hasShadow ? "image://shadow/panel" : ""
        border {
            left: 50
            right: 50
            bottom: 50
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
