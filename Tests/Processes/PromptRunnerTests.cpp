// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/PromptRunner.h"

#include "Support/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

namespace sallowmere {
namespace {

using PromptRunner::buildArguments;

constexpr std::array<const char*, 5> places{
    "/home/u/.local/bin/claude",    "/opt/homebrew/bin/claude", "/usr/local/bin/claude",
    "/home/u/.claude/local/claude", "/home/u/.bun/bin/claude",
};

void addProgram(FakeFileSystem& files, const std::string& path) {
    files.addFile(path, "").executable = true;
}

std::optional<std::string> resolve(const FakeFileSystem& files,
                                   const std::optional<std::string>& setting = std::nullopt) {
    Settings settings = Settings::defaults("/home/u");
    settings.claudeBinary = setting;
    return PromptRunner::resolveClaudeBinary(settings, files, "/home/u");
}

TEST(ClaudeBinary, IsTheFirstOfFivePlaces) {
    FakeFileSystem files;
    for (const char* place : places) {
        addProgram(files, place);
    }
    for (const char* place : places) {
        EXPECT_EQ(resolve(files), place);
        files.remove(place);
    }
    EXPECT_EQ(resolve(files), std::nullopt);
}

TEST(ClaudeBinary, IsTheUsersChoiceBeforeAllOfThem) {
    FakeFileSystem files;
    addProgram(files, places.front());
    addProgram(files, "/opt/mine/claude");
    EXPECT_EQ(resolve(files, "/opt/mine/claude"), "/opt/mine/claude");
}

TEST(ClaudeBinary, MayBeChosenRelativeToTheHomeDirectory) {
    FakeFileSystem files;
    addProgram(files, "/home/u/tools/assistant");
    EXPECT_EQ(resolve(files, "~/tools/assistant"), "/home/u/tools/assistant");
    EXPECT_EQ(resolve(files, "~other/tools/assistant"), std::nullopt);
}

TEST(ClaudeBinary, FallsBackOnThePlacesWhenTheChosenOneIsMissing) {
    FakeFileSystem files;
    addProgram(files, "/opt/homebrew/bin/claude");
    EXPECT_EQ(resolve(files, "/nowhere/claude"), "/opt/homebrew/bin/claude");
}

TEST(ClaudeBinary, HasAFullPathHoweverItWasChosen) {
    FakeFileSystem files;
    addProgram(files, "tools/claude");
    EXPECT_EQ(resolve(files, "tools/claude"), std::filesystem::current_path() / "tools/claude");
    EXPECT_EQ(resolve(files, "claude"), std::nullopt);
    EXPECT_EQ(resolve(files, ""), std::nullopt);
}

TEST(ClaudeBinary, IsARegularFileThatMayBeExecuted) {
    FakeFileSystem files;
    files.addFile("/opt/mine/claude", "");
    files.addDirectory(places[0]);
    files.addFile(places[1], "").executable = false;
    FakeFileSystem::File& directory = files.addFile(places[2], "");
    directory.type = EntryType::directory;
    directory.executable = true;
    files.addLink(places[3], "/versions/2");
    addProgram(files, "/versions/2");
    addProgram(files, places[4]);
    EXPECT_EQ(resolve(files, "/opt/mine/claude"), places[3]);
}

TEST(ClaudeBinary, IsNotSoughtElsewhere) {
    FakeFileSystem files;
    for (const char* path : {"/usr/bin/claude", "/bin/claude", "/home/u/bin/claude", "claude",
                             "~/.local/bin/claude"}) {
        addProgram(files, path);
    }
    EXPECT_EQ(resolve(files), std::nullopt);
}

TEST(PromptRunner, AsksWithThePromptBehindTheSeparator) {
    const QStringList expected{
        "-p", "--resume", "abc", "--fork-session", "--permission-mode", "bypassPermissions",
        "--", "-rf"};
    EXPECT_EQ(buildArguments("-rf", "abc", "bypassPermissions"), expected);
}

TEST(PromptRunner, PassesThePromptUnchangedAsOneArgument) {
    for (const QString& prompt : {QString(), QString("--help"), QString("--"), QString(" a  b "),
                                  QString("one\ntwo"), QString("\"quoted\" $HOME 'x'"),
                                  QString::fromUtf8("gr\xC3\xBC\xC3\x9F dich \xF0\x9F\x91\x8B")}) {
        const QStringList arguments = buildArguments(prompt, "id", "plan");
        ASSERT_EQ(arguments.size(), 8) << prompt.toStdString();
        EXPECT_EQ(arguments.at(6), "--");
        EXPECT_EQ(arguments.at(7), prompt);
    }
}

TEST(PromptRunner, PassesSessionAndModeUnchanged) {
    const QStringList arguments = buildArguments("x", "-an id", "some mode");
    EXPECT_EQ(arguments.at(2), "-an id");
    EXPECT_EQ(arguments.at(5), "some mode");
}

} // namespace
} // namespace sallowmere
