// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/Installation.h"

#include <gmock/gmock.h>

#include <sstream>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string menuEntry = "share/applications/org.sallowmere.Sallowmere.desktop";
const std::string autostartEntry = "etc/xdg/autostart/org.sallowmere.Sallowmere.desktop";
const std::string metainfo = "share/metainfo/org.sallowmere.Sallowmere.metainfo.xml";

TEST(Metadata, EntriesOfTheDesktopAreValid) {
    const Installation installation;
    for (const std::string& entry : {menuEntry, autostartEntry}) {
        const Outcome outcome = runProgram("desktop-file-validate", {installation / entry});
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_THAT(outcome.output + outcome.errors, IsEmpty());
    }
}

TEST(Metadata, EntriesOfTheDesktopStartThePanelAndMindNotThatItIsGone) {
    const Installation installation;
    for (const std::string& entry : {menuEntry, autostartEntry}) {
        EXPECT_THAT(contentOf(installation / entry),
                    AllOf(HasSubstr("\nExec=sallowmere\n"), HasSubstr("\nTryExec=sallowmere\n"),
                          HasSubstr("\nIcon=org.sallowmere.Sallowmere\n")));
    }
}

/// The validator's errors and warnings, a line each.
std::vector<std::string> complaints(const std::string& report) {
    std::vector<std::string> lines;
    std::istringstream text(report);
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with("E: ") || line.starts_with("W: ")) {
            lines.push_back(line);
        }
    }
    return lines;
}

TEST(Metadata, DescriptionForSoftwareCatalogsIsValid) {
    const Installation installation;
    const Outcome outcome =
        runProgram("appstreamcli", {"validate", "--no-net", installation / metainfo});
    EXPECT_THAT(outcome.output, HasSubstr("Validation ")) << outcome.errors;
    // There is no page in the web to name; not every version of the validator asks for one.
    EXPECT_THAT(complaints(outcome.output), Each(HasSubstr("url-homepage-missing")));
    EXPECT_EQ(outcome.exitStatus == 0, complaints(outcome.output).empty()) << outcome.output;
}

TEST(Metadata, TellsTheVersionOfThisProgram) {
    const Installation installation;
    EXPECT_THAT(contentOf(installation / metainfo),
                HasSubstr("<release version=\"" SALLOWMERE_VERSION "\""));
    EXPECT_THAT(contentOf(installation / "share/doc/sallowmere/changelog"),
                StartsWith("sallowmere (" SALLOWMERE_VERSION ") "));
}

TEST(Metadata, CopyrightHoldsTheLicenceWordForWord) {
    const Installation installation;
    const std::string licence = contentOf(SALLOWMERE_SOURCE_DIR "/LICENSE");
    std::istringstream lines(licence.substr(licence.find("Permission is hereby granted")));
    std::string expected = "\nLicense: MIT\n";
    for (std::string line; std::getline(lines, line);) {
        expected += ' ' + (line.empty() ? "." : line) + '\n';
    }
    EXPECT_THAT(contentOf(installation / "share/doc/sallowmere/copyright"), EndsWith(expected));
}

TEST(Metadata, PagesOfTheManualAreWithoutWarnings) {
    const Installation installation;
    for (const std::string program : {"sallowmere", "sallowmere-hook", "sallowmere-notify"}) {
        const Outcome outcome = runProgram(
            "mandoc", {"-Tlint", "-Wwarning", installation / ("share/man/man1/" + program + ".1")});
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_THAT(outcome.output + outcome.errors, IsEmpty());
    }
}

} // namespace
} // namespace sallowmere
