// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include <array>

namespace sallowmere {

std::span<const TerminalRule> LinuxProcessTable::terminals() const {
    constexpr auto exact = TerminalRule::Match::exact;
    // The kernel keeps 15 bytes of a process's name: longer ones stand here as it cuts them.
    // Most names are parts of other programs' names, so they are compared whole.
    static constexpr std::array<TerminalRule, 56> rules{{
        {"konsole", "Konsole", exact},
        {"xterm", "XTerm", exact},
        {"uxterm", "XTerm", exact},
        {"foot", "foot", exact},
        {"footclient", "foot", exact},
        {"ptyxis", "Ptyxis", exact},
        {"ptyxis-agent", "Ptyxis", exact},
        {"kgx", "GNOME Console", exact},
        {"gnome-console", "GNOME Console", exact},
        {"tilix", "Tilix", exact},
        {"terminator", "Terminator", exact},
        {"rxvt", "rxvt", exact},
        {"urxvt", "rxvt", exact},
        {"urxvtd", "rxvt", exact},
        {"rxvt-unicode", "rxvt", exact},
        {"st", "st", exact},
        {"st-256color", "st", exact},
        {"yakuake", "Yakuake", exact},
        {"guake", "Guake", exact},
        {"tilda", "Tilda", exact},
        {"screen", "screen", exact},
        {"dtach", "dtach", exact},
        {"abduco", "abduco", exact},
        {"code", "VS Code", exact},
        {"code-insiders", "VS Code", exact},
        {"code-oss", "VS Code", exact},
        {"codium", "VSCodium", exact},
        {"codium-insiders", "VSCodium", exact},
        {"vscodium", "VSCodium", exact},
        {"windsurf", "Windsurf", exact},
        {"lapce", "Lapce", exact},
        {"emacs", "Emacs", exact},
        {"emacs-gtk", "Emacs", exact},
        {"emacs-pgtk", "Emacs", exact},
        {"sakura", "Sakura", exact},
        {"roxterm", "ROXTerm", exact},
        {"termite", "Termite", exact},
        {"termit", "Termit", exact},
        {"lilyterm", "LilyTerm", exact},
        {"terminology", "Terminology", exact},
        {"cool-retro-term", "Cool Retro Term", exact},
        {"pantheon-termin", "Pantheon Terminal", exact},
        {"io.elementary.t", "Pantheon Terminal", exact},
        {"blackbox", "Black Box", exact},
        {"contour", "Contour", exact},
        {"rio", "Rio", exact},
        {"wayst", "wayst", exact},
        {"havoc", "havoc", exact},
        {"mlterm", "mlterm", exact},
        {"eterm", "Eterm", exact},
        {"aterm", "aterm", exact},
        {"zutty", "Zutty", exact},
        {"tabby", "Tabby", exact},
        {"waveterm", "Wave", exact},
        {"extraterm", "Extraterm", exact},
        {"kmscon", "kmscon", exact},
    }};
    return rules;
}

} // namespace sallowmere
