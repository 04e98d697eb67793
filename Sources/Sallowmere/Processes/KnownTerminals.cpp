// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include <array>

namespace sallowmere::ProcessScanner {

std::span<const TerminalRule> knownTerminals() {
    // The order decides: an editor's own terminal is recognised before the plain word "terminal".
    // The first two are this program, under its present and its former name.
    static constexpr std::array<TerminalRule, 16> terminals{{
        {"sallowmere", "Askrow"},
        {"velmaskrow", "Askrow"},
        {"ghostty", "Ghostty"},
        {"iterm", "iTerm"},
        {"wezterm", "WezTerm"},
        {"kitty", "kitty"},
        {"alacritty", "Alacritty"},
        {"warp", "Warp"},
        {"tmux", "tmux"},
        {"zellij", "Zellij"},
        {"cursor", "Cursor"},
        {"code helper", "VS Code"},
        {"electron", "VS Code"},
        {"zed", "Zed"},
        {"hyper", "Hyper"},
        {"terminal", "Terminal"},
    }};
    return terminals;
}

} // namespace sallowmere::ProcessScanner
