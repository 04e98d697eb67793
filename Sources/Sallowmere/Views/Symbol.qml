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
    source: name ? `image://symbols/${name}?${color}` : ""
    Accessible.ignored: true
}
