// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick

/// What the control under the pointer does, in words, for the one tooltip there is.
QtObject {
    property Item owner: null
    property string text: ""

    /// The control has this to say now, or nothing.
    function say(control: Item, words: string): void {
        if (words !== "") {
            owner = control
            text = words
        } else if (owner === control) {
            owner = null
        }
    }

    function hush(): void {
        owner = null
    }
}
