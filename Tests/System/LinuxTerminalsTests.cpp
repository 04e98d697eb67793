// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include "Sallowmere/Processes/ProcessScanner.h"

#include <QString>

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace sallowmere {
namespace {

constexpr std::int32_t assistant = 100;
constexpr std::size_t kernelNameBytes = 15;

const LinuxProcessTable processes;

/// The display name for an assistant whose parent has this name, or "none".
QString nameUnder(const std::string& comm) {
    const ProcessScanner::Table table{{assistant, {assistant, 101, 0, 0, "00:01", "claude"}},
                                      {101, {101, 1, 0, 0, "00:01", comm}}};
    const auto terminal =
        ProcessScanner::terminalAncestor(assistant, table, 1, processes.terminals());
    return terminal ? terminal->name : QStringLiteral("none");
}

TEST(LinuxTerminals, AreNamesThatTheKernelCanShow) {
    for (const TerminalRule& rule : processes.terminals()) {
        EXPECT_FALSE(rule.needle.empty());
        EXPECT_LE(rule.needle.size(), kernelNameBytes) << rule.needle;
        const QString needle = QString::fromUtf8(rule.needle.data(), qsizetype(rule.needle.size()));
        EXPECT_EQ(needle.toLower(), needle);
        EXPECT_FALSE(needle.contains('/'));
        EXPECT_FALSE(rule.displayName.empty()) << rule.needle;
    }
}

TEST(LinuxTerminals, AreListedOnce) {
    std::set<std::string_view> needles;
    for (const TerminalRule& rule : processes.terminals()) {
        EXPECT_TRUE(needles.insert(rule.needle).second) << rule.needle;
    }
}

TEST(LinuxTerminals, AreNotCaughtByTheOnesKnownEverywhere) {
    for (const TerminalRule& rule : processes.terminals()) {
        for (const TerminalRule& known : ProcessScanner::knownTerminals()) {
            EXPECT_EQ(rule.needle.find(known.needle), std::string_view::npos)
                << rule.needle << " never matches";
        }
    }
}

TEST(LinuxTerminals, AreListedInTheReadme) {
    std::ifstream file(SALLOWMERE_SOURCE_DIR "/README.md");
    std::string page(std::istreambuf_iterator<char>(file), {});
    std::replace(page.begin(), page.end(), '\n', ' ');
    for (const TerminalRule& rule : processes.terminals()) {
        EXPECT_THAT(page, testing::HasSubstr(' ' + std::string(rule.displayName)));
    }
}

TEST(LinuxTerminals, AreEachFoundUnderTheirName) {
    for (const TerminalRule& rule : processes.terminals()) {
        EXPECT_EQ(nameUnder(std::string(rule.needle)).toStdString(), rule.displayName);
    }
}

TEST(LinuxTerminals, ShowTheirNamesToPeople) {
    struct Case {
        const char* comm;
        QString name;
    };
    const Case cases[] = {
        {"konsole", "Konsole"},
        {"xterm", "XTerm"},
        {"/usr/bin/xterm", "XTerm"},
        {"Eterm", "Eterm"},
        {"foot", "foot"},
        {"footclient", "foot"},
        {"kgx", "GNOME Console"},
        {"ptyxis-agent", "Ptyxis"},
        {"terminator", "Terminator"},
        {"st", "st"},
        {"screen", "screen"},
        {"code", "VS Code"},
        {"codium", "VSCodium"},
        {"emacs", "Emacs"},
        {"cool-retro-term", "Cool Retro Term"},
        {"pantheon-termin", "Pantheon Terminal"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(nameUnder(c.comm), c.name) << c.comm;
    }
}

TEST(LinuxTerminals, ComeAfterTheOnesKnownEverywhere) {
    EXPECT_EQ(nameUnder("gnome-terminal-"), "Terminal");
    EXPECT_EQ(nameUnder("kitty"), "kitty");
    EXPECT_EQ(nameUnder("tmux: server"), "tmux");
    EXPECT_EQ(nameUnder("electron"), "VS Code");
}

TEST(LinuxTerminals, AreNotFoundInOtherProgramsNames) {
    for (const char* comm : {"xcode", "screenkey", "stress", "footprint", "systemd", "bash", "sshd",
                             "nvim", "encode", "vimdiff", "gvimtutor", "curio", "firefox"}) {
        EXPECT_EQ(nameUnder(comm), "none") << comm;
    }
}

} // namespace
} // namespace sallowmere
