// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// The coloured dot of a session's status. That of a working session breathes.
Rectangle {
    id: dot

    property string status

    width: 8
    height: 8
    radius: 4
    color: Theme.status(status)
    opacity: breathing.opacity
    Accessible.role: Accessible.Indicator
    Accessible.name: status

    Breathing {
        id: breathing

        lowest: 0.35
        duration: 900
        running: dot.visible && dot.status === "working" && Motion.isWanted
    }
}
