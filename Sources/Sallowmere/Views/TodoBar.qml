// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// How much of its list a session has done.
Item {
    id: bar

    required property real share
    required property string counts

    implicitHeight: 16
    Accessible.role: Accessible.ProgressBar
    Accessible.name: counts

    Rectangle {
        objectName: "track"
        anchors.left: parent.left
        anchors.right: figures.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        height: 4
        radius: 2
        color: Theme.grey(0.15)

        Rectangle {
            objectName: "done"
            width: parent.width * bar.share
            height: parent.height
            radius: parent.radius
            color: Theme.accentBlue
        }
    }
    Figures {
        id: figures

        objectName: "counts"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: bar.counts
        font.pointSize: Theme.footerSize
        color: Theme.textTertiary
        Accessible.ignored: true
    }
}
