// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The first line of a card.
Row {
    id: heading

    required property string symbol
    required property string text
    required property color accent
    property color textColor: accent

    spacing: 8

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: heading.symbol
        size: 14
        color: heading.accent
    }
    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        text: heading.text
        font.weight: Font.DemiBold
        color: heading.textColor
        Accessible.role: Accessible.Heading
    }
}
