// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// Text as it is: whoever wrote it, nothing in it is markup.
Text {
    textFormat: Text.PlainText
    color: Theme.textPrimary
    font.pointSize: Theme.bodySize
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
