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
    /// Milliseconds since it was whole.
    property int elapsed: 0
    /// From 0 to 1 and back.
    readonly property real depth: 1 - Math.abs(1 - elapsed / duration)
    readonly property real opacity: 1 - (1 - lowest) * (1 - Math.cos(Math.PI * depth)) / 2

    interval: Theme.step
    repeat: true
    onTriggered: elapsed = (elapsed + interval) % (2 * duration)
    onRunningChanged: elapsed = 0
}
