// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
import QtQuick

/// Rows below each other, which are at their places at once. Only when their order changes do they
/// glide.
Column {
    property bool isReordered: false

    /// The next layout is of another order.
    function reorder(): void {
        isReordered = true
    }

    onPositioningComplete: isReordered = false
}
