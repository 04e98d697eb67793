// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes
import Sallowmere

/// An arc that turns for as long as it is shown.
Shape {
    id: spinner

    property real size: 12
    property color color: Theme.accentBlue
    readonly property real strokeWidth: 1.8

    width: size
    height: size
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

    RotationAnimator on rotation {
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
        running: spinner.visible && Motion.isWanted
    }
}
