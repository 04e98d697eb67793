// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// The dot that sums up all sessions.
Rectangle {
    id: beacon

    required property barRow bar

    visible: bar.hasBeacon
    width: 7
    height: 7
    radius: 3.5
    color: Theme.accent(bar.beaconColor, Theme.accentBlue)
    opacity: breathing.opacity
    Accessible.role: Accessible.Indicator
    Accessible.name: bar.beaconHelp

    Breathing {
        id: breathing

        lowest: 0.25
        duration: 800
        running: beacon.visible && beacon.bar.isBreathing && Motion.isWanted
    }
}
