// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.Basic

/// The answers to a question, one below the other. The assistant offers a handful; of more than its
/// reader would look at, only those in sight are made.
Loader {
    id: options

    required property list<string> labels
    required property bool isTyped
    readonly property int mostAtOnce: 50

    signal chosen(number: int)

    sourceComponent: labels.length > mostAtOnce ? many : few

    Component {
        id: few

        Column {
            spacing: 4

            Repeater {
                model: options.labels
                delegate: Option {
                }
            }
        }
    }
    Component {
        id: many

        ListView {
            objectName: "manyOptions"
            implicitHeight: 320
            spacing: 4
            model: options.labels
            currentIndex: -1
            // Those out of sight would be made bit by bit, and lie half made on the first meanwhile.
            cacheBuffer: 0
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            delegate: Option {
            }
            ScrollBar.vertical: ThinScrollBar {
            }
        }
    }

    component Option: AskOption {
        width: options.width
        isTyped: options.isTyped
        onClicked: options.chosen(number)
    }
}
