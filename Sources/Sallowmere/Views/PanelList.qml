// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// Everything between the header and the footer: cards, sessions and other processes.
Column {
    id: list

    required property PanelModel panel

    spacing: 0
    move: Transition {
        NumberAnimation {
            property: "y"
            duration: Theme.fade
            easing.type: Easing.OutQuad
        }
    }

    Repeater {
        model: list.panel.completions

        Item {
            id: completion

            required property completionRow entry

            width: list.width
            height: card.implicitHeight + 8

            CompletionCard {
                id: card

                width: parent.width
                entry: completion.entry
                panel: list.panel
            }
        }
    }
    Repeater {
        model: list.panel.approvals

        Item {
            id: approval

            required property approvalRow entry

            width: list.width
            height: approveCard.implicitHeight + 8

            ApproveCard {
                id: approveCard

                width: parent.width
                entry: approval.entry
                panel: list.panel
            }
        }
    }
    Item {
        width: parent.width
        height: askCard.implicitHeight + 8
        visible: list.panel.ask.id !== ""

        AskCard {
            id: askCard

            objectName: "askCard"
            width: parent.width
            entry: list.panel.ask
            panel: list.panel
        }
    }
    Item {
        width: parent.width
        height: planCard.implicitHeight + 8
        visible: list.panel.plan.id !== ""

        PlanCard {
            id: planCard

            objectName: "planCard"
            width: parent.width
            entry: list.panel.plan
            panel: list.panel
        }
    }
    PlainText {
        objectName: "noSessions"
        width: parent.width
        height: 56
        visible: sessions.count === 0
        text: "No active Claude Code sessions"
        horizontalAlignment: Text.AlignHCenter
        color: Theme.textTertiary
    }
    Repeater {
        id: sessions

        model: list.panel.sessions

        SessionView {
            width: list.width
            panel: list.panel
        }
    }
    PlainText {
        visible: processes.count > 0
        leftPadding: 4
        topPadding: 12
        bottomPadding: 4
        text: "ALSO RUNNING"
        font.pointSize: Theme.footerSize
        font.weight: Font.DemiBold
        font.letterSpacing: 0.6
        color: Theme.textTertiary
        Accessible.role: Accessible.Heading
    }
    Repeater {
        id: processes

        model: list.panel.processes

        ProcessRowView {
            width: list.width
        }
    }
}
