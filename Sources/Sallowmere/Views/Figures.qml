// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// A number that changes without moving what stands beside it: it is as wide as its widest digits
/// would be.
PlainText {
    id: figures

    /// It is at least as wide as this.
    property string widest: ""
    readonly property real reserved: Math.ceil(Math.max(own.advanceWidth, least.advanceWidth))

    width: Math.max(implicitWidth, reserved)

    TextMetrics {
        id: own

        font: figures.font
        text: figures.text.replace(/[0-9]/g, "0")
    }
    TextMetrics {
        id: least

        font: figures.font
        text: figures.widest
    }
}
