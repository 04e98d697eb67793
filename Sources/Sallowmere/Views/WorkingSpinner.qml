// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes
import Sallowmere

/// An arc that turns for as long as it is shown. It takes steps, because each one is drawn.
Shape {
    id: spinner

    property real size: 12
    property color color: Theme.accentBlue
    readonly property real strokeWidth: 1.8
    /// A turn takes 0.9 seconds.
    readonly property int steps: 900 / Theme.step
    property int step: 0

    width: size
    height: size
    rotation: 360 * step / steps
    Accessible.role: Accessible.Indicator
    Accessible.name: "working"

    ShapePath {
        strokeColor: spinner.color
        strokeWidth: spinner.strokeWidth
        fillColor: "transparent"
        capStyle: ShapePath.RoundCap

        PathAngleArc {
            centerX: spinner.size / 2
            centerY: spinner.size / 2
            radiusX: (spinner.size - spinner.strokeWidth) / 2
            radiusY: radiusX
            startAngle: -90
            sweepAngle: 270
        }
    }
    Timer {
        interval: Theme.step
        repeat: true
        running: spinner.visible && Motion.isWanted
        onTriggered: spinner.step = (spinner.step + 1) % spinner.steps
    }
}
