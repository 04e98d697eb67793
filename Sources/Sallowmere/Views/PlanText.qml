// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A plan, styled by its Markdown. Nothing in it is a link, and nothing is loaded for it.
TextEdit {
    property string markdown

    textFormat: TextEdit.RichText
    text: PlanMarkdown.styled(markdown)
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByMouse: true
    activeFocusOnPress: false
    color: Theme.grey(0.82)
    selectionColor: Qt.alpha(Theme.accentBlue, 0.5)
    font.pointSize: Theme.bodySize
    Accessible.role: Accessible.StaticText
    Accessible.name: getText(0, length)
}
