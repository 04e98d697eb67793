// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The opacity of what fades down and up again for as long as it runs, and is whole otherwise. It
/// takes steps, because each one is drawn.
Timer {
    id: breathing

    required property real lowest
    /// Milliseconds, of each direction.
    required property int duration
    readonly property int steps: Math.round(duration / interval)
    property int step: 0
    /// From 0 to 1 and back.
    readonly property real depth: 1 - Math.abs(1 - step / steps)
    readonly property real opacity: 1 - (1 - lowest) * (1 - Math.cos(Math.PI * depth)) / 2

    interval: 50
    repeat: true
    onTriggered: step = (step + 1) % (2 * steps)
    onRunningChanged: step = 0
}
