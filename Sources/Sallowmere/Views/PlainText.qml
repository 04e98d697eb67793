// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// Text as it is, whoever wrote it: nothing in it is markup, and it stays on its line and on its
/// side whichever way it reads.
Text {
    textFormat: Text.PlainText
    color: Theme.textPrimary
    font.pointSize: Theme.bodySize
    verticalAlignment: Text.AlignVCenter
    horizontalAlignment: Text.AlignLeft
    maximumLineCount: 1
    elide: Text.ElideRight
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
