// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// A small button that is only a drawing.
PressArea {
    id: button

    required property string symbol
    property int symbolSize: 12
    property color symbolColor: Theme.textSecondary

    implicitWidth: 20
    implicitHeight: 20
    radius: 5
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            size: button.symbolSize
            color: button.symbolColor
        }
    }
}
