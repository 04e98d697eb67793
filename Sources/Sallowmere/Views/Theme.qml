// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick
import Sallowmere

/// The one palette and type scale. Colours are sRGB with components from 0 to 1, on black; lengths
/// are in points.
QtObject {
    readonly property color background: "black"
    readonly property color textPrimary: "white"
    readonly property color textSecondary: grey(0.62)
    readonly property color textTertiary: grey(0.42)
    readonly property color accentBlue: Qt.rgba(0.36, 0.56, 1.0, 1)
    readonly property color accentGreen: Qt.rgba(0.24, 0.82, 0.44, 1)
    readonly property color accentCyan: Qt.rgba(0.35, 0.78, 0.95, 1)
    readonly property color accentOrange: Qt.rgba(1.0, 0.72, 0.30, 1)
    readonly property color accentPurple: Qt.rgba(0.72, 0.55, 1.0, 1)
    readonly property color badgeBackground: grey(0.16)
    readonly property color cardBackground: grey(0.09)
    /// Errors, and allowances nearly used up.
    readonly property color red: Qt.rgba(1.0, 0.36, 0.34, 1)
    readonly property color fieldBackground: grey(0.11)
    readonly property color optionBackground: grey(0.13)
    readonly property color separator: Qt.rgba(1, 1, 1, 0.07)

    readonly property real titleSize: text(13)
    readonly property real optionSize: text(12.5)
    readonly property real bodySize: text(12)
    readonly property real logSize: text(11.5)
    readonly property real chipSize: text(11)
    readonly property real footerSize: text(10)

    readonly property int cardRadius: 12
    readonly property int controlRadius: 8
    readonly property int badgeRadius: 6
    readonly property int panelRadius: 22

    /// Milliseconds of a fade or a glide.
    readonly property int fade: Motion.isWanted ? 120 : 0
    /// Milliseconds between two steps of what never ends: each one is drawn.
    readonly property int step: 75

    readonly property string monospace: "monospace"

    /// The size of a font that is so many of our points high. A font's own points are larger, and it
    /// takes no fraction of anything else.
    function text(height: real): real {
        return height * 72 / 96
    }

    function grey(level: real): color {
        return Qt.rgba(level, level, level, 1)
    }

    function status(name: string): color {
        switch (name) {
        case "working":
            return accentBlue
        case "waiting":
            return accentCyan
        case "done":
            return accentGreen
        }
        return textTertiary
    }

    /// By the names that the model uses.
    function accent(name: string, tint: color): color {
        switch (name) {
        case "green":
            return accentGreen
        case "orange":
            return accentOrange
        case "cyan":
            return accentCyan
        case "blue":
            return accentBlue
        case "red":
            return red
        }
        return tint
    }
}
