// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// Fades its target down and up again for as long as it runs; the target is whole otherwise.
SequentialAnimation {
    id: breathing

    required property Item target
    required property real lowest
    required property int duration

    loops: Animation.Infinite
    onStopped: target.opacity = 1

    NumberAnimation {
        target: breathing.target
        property: "opacity"
        from: 1
        to: breathing.lowest
        duration: breathing.duration
        easing.type: Easing.InOutQuad
    }
    NumberAnimation {
        target: breathing.target
        property: "opacity"
        from: breathing.lowest
        to: 1
        duration: breathing.duration
        easing.type: Easing.InOutQuad
    }
}
