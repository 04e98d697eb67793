// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The token counts in one line, and the way out.
Item {
    id: footer

    required property string text
    signal quitRequested()

    implicitHeight: 20

    PlainText {
        objectName: "footerText"
        anchors.left: parent.left
        anchors.right: quit.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        text: footer.text
        font.pointSize: Theme.footerSize
        color: Theme.textTertiary
    }
    SymbolButton {
        id: quit

        objectName: "quit"
        anchors.right: parent.right
        anchors.rightMargin: -5
        anchors.verticalCenter: parent.verticalCenter
        symbol: "power"
        symbolSize: 10
        symbolColor: Theme.textTertiary
        help: "Quit Sallowmere"
        onClicked: footer.quitRequested()
    }
}
