// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic
import Sallowmere

/// A plan that waits for its review. The text can be selected; a click anywhere else jumps.
PressArea {
    id: card

    required property planRow entry
    required property PanelModel panel
    readonly property int tallest: 132

    caption: "Plan ready for review"
    help: "Jump to this session's terminal"
    radius: Theme.cardRadius
    baseColor: Theme.cardBackground
    hoverColor: Theme.grey(0.12)
    padding: 12
    onClicked: panel.jump(entry.id)

    contentItem: Column {
        spacing: 8

        CardHeading {
            symbol: "map"
            text: "Plan ready for review"
            accent: Theme.accentPurple
        }
        Flickable {
            objectName: "planScroll"
            width: parent.width
            height: Math.min(plan.implicitHeight, card.tallest)
            contentHeight: plan.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: true
            ScrollBar.vertical: ThinScrollBar {
            }

            PlanText {
                id: plan

                objectName: "plan"
                width: parent.width - 8
                markdown: card.entry.markdown
            }
        }
        PlainText {
            objectName: "planHint"
            width: parent.width
            text: "Approve in the terminal — click to jump"
            font.pointSize: Theme.footerSize
            color: Theme.textTertiary
        }
    }
}
