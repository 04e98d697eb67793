// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
/// Brings a session's terminal to the front.
SymbolButton {
    symbol: "arrow-up-right"
    help: "Jump to this session's terminal"
}
