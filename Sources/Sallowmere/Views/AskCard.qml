// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// A question that a session asks, with its numbered options.
Card {
    id: card

    required property askRow entry
    required property PanelModel panel

    CardHeading {
        height: 20
        symbol: "bubble"
        text: "Claude asks"
        accent: Theme.accentCyan
    }
    PlainText {
        objectName: "question"
        width: parent.width
        topPadding: 4
        bottomPadding: 8
        text: card.entry.question
        wrapMode: Text.Wrap
        maximumLineCount: 12
        font.pointSize: Theme.titleSize
    }
    AskOptions {
        width: parent.width
        labels: card.entry.options
        isTyped: card.entry.isTyped
        onChosen: number => card.panel.answer(card.entry.id, number)
    }
    PlainText {
        objectName: "hint"
        width: parent.width
        topPadding: 8
        text: card.entry.hint
        font.pointSize: Theme.footerSize
        color: Theme.textTertiary
    }
}
