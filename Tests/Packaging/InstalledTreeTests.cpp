// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/Installation.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace sallowmere {
namespace {

using testing::Each;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const std::vector<int> iconSizes{16, 22, 24, 32, 48, 64, 128, 256, 512};

std::string iconPath(int pixels) {
    const std::string size = std::to_string(pixels);
    return "share/icons/hicolor/" + size + 'x' + size + "/apps/org.sallowmere.Sallowmere.png";
}

std::vector<std::string> expectedFiles() {
    std::vector<std::string> files{
        "644 usr/local/etc/xdg/autostart/org.sallowmere.Sallowmere.desktop",
        "644 usr/local/share/applications/org.sallowmere.Sallowmere.desktop",
        "644 usr/local/share/doc/sallowmere/changelog",
        "644 usr/local/share/doc/sallowmere/copyright",
        "644 usr/local/share/icons/hicolor/scalable/apps/org.sallowmere.Sallowmere.svg",
        "644 usr/local/share/man/man1/sallowmere-hook.1",
        "644 usr/local/share/man/man1/sallowmere-notify.1",
        "644 usr/local/share/man/man1/sallowmere.1",
        "644 usr/local/share/metainfo/org.sallowmere.Sallowmere.metainfo.xml",
        "644 usr/local/share/sallowmere/README.md",
        "644 usr/local/share/sallowmere/settings.json",
        "755 usr/local/bin/sallowmere",
        "755 usr/local/bin/sallowmere-hook",
        "755 usr/local/bin/sallowmere-notify",
        "usr/local/share/sallowmere/sallowmere-notify -> ../../bin/sallowmere-notify",
    };
    for (const int pixels : iconSizes) {
        files.push_back("644 usr/local/" + iconPath(pixels));
    }
    return files;
}

/// A number of a PNG's first chunk: four bytes, the highest first.
std::uint32_t number(const std::string& png, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(png.at(offset + i));
    }
    return value;
}

TEST(InstalledTree, HoldsWhatTheProgramNeedsAndNothingElse) {
    EXPECT_THAT(Installation().files(), UnorderedElementsAreArray(expectedFiles()));
}

TEST(InstalledTree, HasDirectoriesThatEverybodyCanRead) {
    EXPECT_THAT(Installation().directories(), Each(StartsWith("755 ")));
}

TEST(InstalledTree, LinksToTheHookThatIsInstalled) {
    const Installation installation;
    EXPECT_TRUE(std::filesystem::equivalent(installation / "share/sallowmere/sallowmere-notify",
                                            installation / "bin/sallowmere-notify"));
}

TEST(InstalledTree, HasIconsAsLargeAsTheirDirectoriesSay) {
    constexpr std::size_t width = 16;
    constexpr std::size_t height = 20;
    const Installation installation;
    for (const int pixels : iconSizes) {
        const std::string png = contentOf(installation / iconPath(pixels));
        ASSERT_THAT(png, StartsWith("\x89PNG\r\n"));
        EXPECT_EQ(number(png, width), static_cast<std::uint32_t>(pixels));
        EXPECT_EQ(number(png, height), static_cast<std::uint32_t>(pixels));
    }
}

TEST(InstalledTree, HasTheFilesThatThePackageKeepsOnceTheyAreEdited) {
    const Installation installation;
    const std::string conffiles = contentOf(SALLOWMERE_SOURCE_DIR "/Packaging/debian/conffiles");
    ASSERT_THAT(conffiles, testing::EndsWith("\n"));
    // One line; without the slash before it and the end of the line.
    const std::string configuration = conffiles.substr(1, conffiles.size() - 2);
    EXPECT_TRUE(std::filesystem::exists(installation / configuration)) << configuration;
}

TEST(InstalledTree, HasAProgramThatRuns) {
    const TemporaryHome home;
    const Installation installation;
    const Outcome outcome = run({installation / "bin/sallowmere",
                                 {"sallowmere", "--dump"},
                                 {"PATH=/usr/bin:/bin", "HOME=" + home.path()},
                                 {}});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, StartsWith("claude binary: "));
}

} // namespace
} // namespace sallowmere
