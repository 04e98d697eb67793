// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace sallowmere {
namespace {

using ProcessScanner::Table;
using ProcessScanner::Terminal;
using ProcessScanner::terminalAncestor;

constexpr std::int32_t assistant = 100;

struct Known {
    std::string needle;
    QString name;
};

const std::array<Known, 16>& known() {
    static const std::array<Known, 16> table{{
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
    return table;
}

void add(Table& table, std::int32_t pid, std::int32_t ppid, const std::string& comm) {
    table[pid] = PsRow{pid, ppid, 1000, 0, "00:01", comm};
}

/// The terminal of an assistant whose ancestors, from its parent on, have these names.
std::optional<Terminal> terminalUnder(const std::vector<std::string>& ancestors,
                                      std::span<const TerminalRule> platform = {}) {
    Table table;
    std::int32_t pid = assistant;
    add(table, pid, pid + 1, "claude");
    for (const std::string& comm : ancestors) {
        ++pid;
        add(table, pid, pid + 1, comm);
    }
    return terminalAncestor(assistant, table, ProcessScanner::terminalHops, platform);
}

QString nameUnder(const std::string& comm) {
    const std::optional<Terminal> terminal = terminalUnder({comm});
    return terminal ? terminal->name : QStringLiteral("none");
}

TEST(KnownTerminals, AreSixteenInThisOrder) {
    const std::span<const TerminalRule> rules = ProcessScanner::knownTerminals();
    ASSERT_EQ(rules.size(), known().size());
    for (std::size_t i = 0; i < rules.size(); ++i) {
        EXPECT_EQ(rules[i].needle, known()[i].needle);
        EXPECT_EQ(rules[i].displayName, known()[i].name.toStdString());
        EXPECT_EQ(rules[i].match, TerminalRule::Match::substring);
    }
}

TEST(KnownTerminals, AreFoundAnywhereInTheNameInAnyCase) {
    for (const Known& terminal : known()) {
        const std::string upper = QString::fromStdString(terminal.needle).toUpper().toStdString();
        EXPECT_EQ(nameUnder(terminal.needle), terminal.name);
        EXPECT_EQ(nameUnder("/opt/some bin/x" + upper + "-Y"), terminal.name);
    }
}

TEST(KnownTerminals, WinByTheirPlaceInTheTableNotInTheName) {
    for (std::size_t first = 0; first < known().size(); ++first) {
        for (std::size_t second = first + 1; second < known().size(); ++second) {
            EXPECT_EQ(nameUnder(known()[second].needle + '|' + known()[first].needle),
                      known()[first].name);
        }
    }
}

TEST(KnownTerminals, AreLookedForInTheLastComponentAlone) {
    EXPECT_EQ(nameUnder("/opt/kitty/bin/bash"), "none");
    EXPECT_EQ(nameUnder("/opt/bin/kitty/"), "kitty");
    EXPECT_EQ(nameUnder("/Applications/iTerm.app/Contents/MacOS/iTerm2"), "iTerm");
}

TEST(KnownTerminals, NameTheWayTheAssistantWasStarted) {
    EXPECT_EQ(nameUnder("iTerm2"), "iTerm");
    EXPECT_EQ(nameUnder("/Applications/Visual Studio Code.app/Code Helper (Renderer)"), "VS Code");
    EXPECT_EQ(nameUnder("tmux: server"), "tmux");
    EXPECT_EQ(nameUnder("/usr/bin/sallowmere"), "Askrow");
    EXPECT_EQ(nameUnder("VelmAskrow"), "Askrow");
    EXPECT_EQ(nameUnder("bash"), "none");
}

TEST(KnownTerminals, AreRecognisedInNamesThatTheKernelCut) {
    EXPECT_EQ(nameUnder("gnome-terminal-"), "Terminal");
    EXPECT_EQ(nameUnder("xfce4-terminal"), "Terminal");
    EXPECT_EQ(nameUnder("wezterm-mux-ser"), "WezTerm");
}

TEST(TerminalAncestor, IsTheNearestOne) {
    EXPECT_EQ(terminalUnder({"bash", "tmux: server", "kitty"}), (Terminal{"tmux", 102}));
    EXPECT_EQ(terminalUnder({"bash", "kitty", "tmux: server"}), (Terminal{"kitty", 102}));
}

TEST(TerminalAncestor, IsNotTheProcessItself) {
    Table table;
    add(table, assistant, 101, "kitty");
    add(table, 101, 1, "bash");
    EXPECT_EQ(terminalAncestor(assistant, table, 15), std::nullopt);
}

TEST(TerminalAncestor, IsSoughtFifteenHopsUp) {
    std::vector<std::string> ancestors(14, "bash");
    ancestors.emplace_back("kitty");
    EXPECT_EQ(terminalUnder(ancestors), (Terminal{"kitty", 115}));
    ancestors.insert(ancestors.begin(), "bash");
    EXPECT_EQ(terminalUnder(ancestors), std::nullopt);
}

TEST(TerminalAncestor, IsSoughtNoFurtherThanAsked) {
    Table table;
    add(table, assistant, 101, "claude");
    add(table, 101, 102, "bash");
    add(table, 102, 1, "kitty");
    EXPECT_EQ(terminalAncestor(assistant, table, 0), std::nullopt);
    EXPECT_EQ(terminalAncestor(assistant, table, 1), std::nullopt);
    EXPECT_EQ(terminalAncestor(assistant, table, 2), (Terminal{"kitty", 102}));
}

TEST(TerminalAncestor, IsNeitherTheFirstProcessNorBelow) {
    for (const std::int32_t top : {1, 0, -1}) {
        Table table;
        add(table, assistant, top, "claude");
        add(table, top, 2, "kitty");
        add(table, 2, 0, "kitty");
        EXPECT_EQ(terminalAncestor(assistant, table, 15), std::nullopt) << top;
    }
    Table table;
    add(table, assistant, 2, "claude");
    add(table, 2, 0, "kitty");
    EXPECT_EQ(terminalAncestor(assistant, table, 15), (Terminal{"kitty", 2}));
}

TEST(TerminalAncestor, IsAbsentWhereTheChainBreaks) {
    Table table;
    add(table, assistant, 101, "claude");
    add(table, 101, 102, "bash");
    add(table, 103, 1, "kitty");
    EXPECT_EQ(terminalAncestor(assistant, table, 15), std::nullopt);
}

TEST(TerminalAncestor, IsAbsentForAnUnlistedProcess) {
    Table table;
    add(table, 0, 0, "kitty");
    EXPECT_EQ(terminalAncestor(assistant, table, 15), std::nullopt);
}

TEST(TerminalAncestor, EndsInACircleOfParents) {
    Table table;
    add(table, assistant, 101, "claude");
    add(table, 101, assistant, "bash");
    EXPECT_EQ(terminalAncestor(assistant, table, 1'000), std::nullopt);
}

TEST(PlatformTerminals, AreAskedAfterTheKnownOnes) {
    constexpr TerminalRule platform[] = {
        {"my-kitty", "Mine", TerminalRule::Match::exact},
        {"xterm", "XTerm", TerminalRule::Match::exact},
    };
    EXPECT_EQ(terminalUnder({"my-kitty"}, platform), (Terminal{"kitty", 101}));
    EXPECT_EQ(terminalUnder({"xterm"}, platform), (Terminal{"XTerm", 101}));
    EXPECT_EQ(terminalUnder({"/usr/bin/XTerm"}, platform), (Terminal{"XTerm", 101}));
    EXPECT_EQ(terminalUnder({"xterm"}), std::nullopt);
}

TEST(PlatformTerminals, WinOverAKnownOneFurtherUp) {
    constexpr TerminalRule platform[] = {{"screen", "screen", TerminalRule::Match::exact}};
    EXPECT_EQ(terminalUnder({"screen", "kitty"}, platform), (Terminal{"screen", 101}));
}

TEST(PlatformTerminals, MatchExactlyOrAnywhereAsTheirRuleSays) {
    constexpr TerminalRule platform[] = {
        {"st", "st", TerminalRule::Match::exact},
        {"rxvt", "rxvt", TerminalRule::Match::substring},
        {"urxvt", "later", TerminalRule::Match::exact},
    };
    EXPECT_EQ(terminalUnder({"st"}, platform), (Terminal{"st", 101}));
    EXPECT_EQ(terminalUnder({"stress"}, platform), std::nullopt);
    EXPECT_EQ(terminalUnder({"test"}, platform), std::nullopt);
    EXPECT_EQ(terminalUnder({"urxvt"}, platform), (Terminal{"rxvt", 101}));
}

} // namespace
} // namespace sallowmere
