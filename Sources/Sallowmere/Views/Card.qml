// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// The ground that cards have in common.
Rectangle {
    default property alias content: column.data

    implicitHeight: column.implicitHeight + 24
    radius: Theme.cardRadius
    color: Theme.cardBackground

    Column {
        id: column

        anchors.fill: parent
        anchors.margins: 12
    }
}
