// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// One of our own drawings, in a colour.
Image {
    property string name
    property color color: Theme.textSecondary
    property int size: 12

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    // The colour's numbers, because making a text of the colour itself is not safe: Qt 6.4 may
    // collect the wrapper that it does this by while it is in use.
    source: name ? `image://symbols/${name}?${color.r},${color.g},${color.b},${color.a}` : ""
    Accessible.ignored: true
}
