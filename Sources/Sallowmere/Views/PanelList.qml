// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import Sallowmere

/// Everything between the header and the footer: cards, sessions and other processes.
RowColumn {
    id: list

    required property PanelModel panel

    Reorders {
        target: list.panel.completions
    }
    Reorders {
        target: list.panel.approvals
    }
    Reorders {
        target: list.panel.sessions
    }

    Repeater {
        model: list.panel.completions

        ListRow {
            id: completion

            required property completionRow entry

            column: list
            width: list.width
            height: card.implicitHeight + 8

            CompletionCard {
                id: card

                objectName: "completionCard"
                width: parent.width
                entry: completion.entry
                panel: list.panel
            }
        }
    }
    Repeater {
        model: list.panel.approvals

        ListRow {
            id: approval

            required property approvalRow entry

            column: list
            width: list.width
            height: approveCard.implicitHeight + 8

            ApproveCard {
                id: approveCard

                objectName: "approveCard"
                width: parent.width
                entry: approval.entry
                panel: list.panel
            }
        }
    }
    ListRow {
        column: list
        width: parent.width
        height: askCard.implicitHeight + 8
        visible: list.panel.ask.id !== ""
        onVisibleChanged: list.reorder()

        AskCard {
            id: askCard

            objectName: "askCard"
            width: parent.width
            entry: list.panel.ask
            panel: list.panel
        }
    }
    ListRow {
        column: list
        width: parent.width
        height: planCard.implicitHeight + 8
        visible: list.panel.plan.id !== ""
        onVisibleChanged: list.reorder()

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
            column: list
            width: list.width
            panel: list.panel
        }
    }
    ListRow {
        column: list
        width: parent.width
        height: heading.implicitHeight
        visible: processes.count > 0

        PlainText {
            id: heading

            objectName: "processesHeading"
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
    }
    Repeater {
        id: processes

        model: list.panel.processes

        ListRow {
            id: process

            required property processRow entry

            column: list
            width: list.width
            height: processView.implicitHeight

            ProcessRowView {
                id: processView

                width: parent.width
                entry: process.entry
            }
        }
    }

    component Reorders: Connections {
        function onRowsMoved(): void {
            list.reorder()
        }
        function onRowsInserted(): void {
            list.reorder()
        }
    }
}
