// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/TerminalApplications.h"

#include "Platform/X11/WindowText.h"
#include "Sallowmere/Settings/Settings.h"

#include <gmock/gmock.h>

#include <string>

namespace sallowmere {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

using TerminalApplications::namesOf;

TEST(TerminalApplications, AreKnownByTheNamesTheyBearHere) {
    EXPECT_THAT(namesOf("com.googlecode.iterm2"), IsSupersetOf({"Tilix", "Terminator"}));
    EXPECT_THAT(namesOf("com.mitchellh.ghostty"), IsSupersetOf({"com.mitchellh.ghostty"}));
    EXPECT_THAT(namesOf("dev.warp.Warp-Stable"), ElementsAre("dev.warp.Warp"));
    EXPECT_THAT(namesOf("com.github.wez.wezterm"), ElementsAre("org.wezfurlong.wezterm"));
    EXPECT_THAT(namesOf("net.kovidgoyal.kitty"), ElementsAre("kitty"));
}

TEST(TerminalApplications, AreWhateverTheDesktopHasForTheSystemsOwn) {
    EXPECT_THAT(namesOf("com.apple.Terminal"),
                IsSupersetOf({"gnome-terminal", "konsole", "xfce4-terminal", "mate-terminal",
                              "lxterminal", "qterminal", "org.gnome.Console", "org.gnome.Ptyxis",
                              "xterm", "urxvt", "Alacritty", "foot", "st", "terminology",
                              "deepin-terminal", "io.elementary.terminal"}));
}

TEST(TerminalApplications, HaveCounterpartsForAllThatTheSettingsName) {
    for (const QString& identifier : Settings::defaults("/home/u").terminalBundleIds) {
        const std::string text = identifier.toStdString();
        EXPECT_THAT(namesOf(text), Not(IsEmpty())) << text;
        if (text != "com.mitchellh.ghostty") {
            EXPECT_THAT(namesOf(text), Not(Contains(text)));
        }
    }
}

TEST(TerminalApplications, AreRecognisedInAnyCaseOfLetters) {
    EXPECT_EQ(namesOf("COM.APPLE.TERMINAL"), namesOf("com.apple.Terminal"));
}

TEST(TerminalApplications, StandForThemselvesUnderAnyOtherIdentifier) {
    EXPECT_THAT(namesOf("Konsole"), ElementsAre("Konsole"));
    EXPECT_THAT(namesOf("com.apple"), ElementsAre("com.apple"));
    EXPECT_THAT(namesOf("com.apple.Terminal "), ElementsAre("com.apple.Terminal "));
}

TEST(TerminalApplications, AreNobodyWithoutAnIdentifier) {
    EXPECT_THAT(namesOf(""), IsEmpty());
}

TEST(TerminalApplications, AreListedOnce) {
    for (const QString& identifier : Settings::defaults("/home/u").terminalBundleIds) {
        const std::string text = identifier.toStdString();
        const auto names = namesOf(text);
        for (std::size_t first = 0; first < names.size(); ++first) {
            for (std::size_t second = first + 1; second < names.size(); ++second) {
                EXPECT_FALSE(WindowText::isSameName(names[first], names[second])) << names[first];
            }
        }
    }
}

} // namespace
} // namespace sallowmere
