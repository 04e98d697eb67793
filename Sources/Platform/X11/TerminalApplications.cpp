// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/TerminalApplications.h"

#include "Platform/X11/WindowText.h"

#include <algorithm>
#include <array>
#include <span>

namespace sallowmere::TerminalApplications {

namespace {

// The settings' list comes from another system. What it names there exists here under another
// name, or something takes its place: a terminal of many panes, or the one that the desktop has.
constexpr std::string_view panes[] = {"com.gexperts.Tilix", "Tilix", "Terminator"};
constexpr std::string_view ghostty[] = {"com.mitchellh.ghostty", "ghostty"};
constexpr std::string_view warp[] = {"dev.warp.Warp"};
constexpr std::string_view wezterm[] = {"org.wezfurlong.wezterm"};
constexpr std::string_view kitty[] = {"kitty"};
constexpr std::string_view desktops[] = {
    "Alacritty",
    "com.raggesilver.BlackBox",
    "contour",
    "cool-retro-term",
    "deepin-terminal",
    "Eterm",
    "foot",
    "gnome-terminal",
    "gnome-terminal-server",
    "guake",
    "io.elementary.terminal",
    "kgx",
    "konsole",
    "lilyterm",
    "lxterminal",
    "mate-terminal",
    "mlterm",
    "org.gnome.Console",
    "org.gnome.Ptyxis",
    "org.gnome.Terminal",
    "org.kde.konsole",
    "org.kde.yakuake",
    "pantheon-terminal",
    "ptyxis",
    "qterminal",
    "rio",
    "roxterm",
    "rxvt",
    "sakura",
    "st",
    "st-256color",
    "termit",
    "termite",
    "terminology",
    "tilda",
    "urxvt",
    "uxterm",
    "x-terminal-emulator",
    "xfce4-terminal",
    "xterm",
    "yakuake",
    "zutty",
};

struct Counterpart {
    std::string_view identifier;
    std::span<const std::string_view> names;
};

constexpr std::array<Counterpart, 6> counterparts{{
    {"com.googlecode.iterm2", panes},
    {"com.mitchellh.ghostty", ghostty},
    {"dev.warp.Warp-Stable", warp},
    {"com.github.wez.wezterm", wezterm},
    {"net.kovidgoyal.kitty", kitty},
    {"com.apple.Terminal", desktops},
}};

} // namespace

std::vector<std::string_view> namesOf(std::string_view identifier) {
    if (identifier.empty()) {
        return {};
    }
    const auto found =
        std::find_if(counterparts.begin(), counterparts.end(), [&](const Counterpart& counterpart) {
            return WindowText::isSameName(counterpart.identifier, identifier);
        });
    return found == counterparts.end() ? std::vector{identifier}
                                       : std::vector(found->names.begin(), found->names.end());
}

} // namespace sallowmere::TerminalApplications
