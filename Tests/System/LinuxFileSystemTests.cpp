// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxFileSystem.h"

#include "Support/Missing.h"
#include "System/TemporaryHome.h"
#include "System/Unprivileged.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using testing::Pair;
using testing::UnorderedElementsAre;

const LinuxFileSystem files;

std::map<std::string, EntryType> entries(const std::string& directory) {
    std::map<std::string, EntryType> found;
    EXPECT_TRUE(files.list(
        directory, [&](std::string_view name, EntryType type) { found.emplace(name, type); }));
    return found;
}

bool canBeListed(const std::string& directory) {
    return files.list(
        directory, [](std::string_view name, EntryType) { ADD_FAILURE() << "visited " << name; });
}

EntryType typeOf(const std::string& path, Links links) {
    const std::optional<FileStatus> status = files.status(path, links);
    EXPECT_TRUE(status.has_value()) << path;
    return status.value_or(FileStatus{}).type;
}

TEST(LinuxFileSystem, ListsEveryEntryWithItsOwnType) {
    const TemporaryHome home;
    home.write("file", "");
    home.write(".hidden", "");
    home.write("directory/inside", "");
    home.makeLink("link", home / "directory");
    home.makeLink("dangling", home / "nothing");
    home.makeFifo("x.jsonl");
    EXPECT_THAT(
        entries(home.path()),
        UnorderedElementsAre(Pair("file", EntryType::regular), Pair(".hidden", EntryType::regular),
                             Pair("directory", EntryType::directory), Pair("link", EntryType::link),
                             Pair("dangling", EntryType::link), Pair("x.jsonl", EntryType::other)));
    EXPECT_EQ(entries("/dev").at("null"), EntryType::other);
}

TEST(LinuxFileSystem, ListsThroughALink) {
    const TemporaryHome home;
    home.write("directory/inside", "");
    EXPECT_THAT(entries(home.makeLink("link", home / "directory")),
                UnorderedElementsAre(Pair("inside", EntryType::regular)));
}

TEST(LinuxFileSystem, GivesNamesAsTheirBytes) {
    const TemporaryHome home;
    const std::string name = "caf\xE9\xFF\n.jsonl";
    home.write(name, "content");
    EXPECT_THAT(entries(home.path()), UnorderedElementsAre(Pair(name, EntryType::regular)));
    EXPECT_EQ(readWholeFile(files, home / name), "content");
}

TEST(LinuxFileSystem, ListsAnEmptyDirectory) {
    EXPECT_TRUE(canBeListed(TemporaryHome().path()));
}

TEST(LinuxFileSystem, DoesNotListWhatIsNoDirectory) {
    const TemporaryHome home;
    EXPECT_FALSE(canBeListed(""));
    EXPECT_FALSE(canBeListed("/dev/null"));
    EXPECT_FALSE(canBeListed(home / "nothing"));
    EXPECT_FALSE(canBeListed(home.write("file", "")));
    EXPECT_FALSE(canBeListed(home / "file/below"));
    EXPECT_FALSE(canBeListed(home.makeFifo("fifo")));
    EXPECT_FALSE(canBeListed(home.makeLink("dangling", home / "nothing")));
    EXPECT_FALSE(canBeListed(home.makeLink("circle", home / "circle")));
}

TEST(LinuxFileSystem, ListsNothingThatItMayNot) {
    const TemporaryHome home;
    std::filesystem::permissions(std::filesystem::path(home.path()).parent_path(),
                                 std::filesystem::perms::all);
    const std::string path = home.makeDirectory("locked");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    {
        const Unprivileged user;
        EXPECT_FALSE(canBeListed(path));
    }
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST(LinuxFileSystem, TellsTheTypeOfALinkOrOfItsTarget) {
    const TemporaryHome home;
    home.write("file", "12345");
    home.makeDirectory("directory");
    home.makeLink("to-file", "file");
    home.makeLink("to-directory", "directory");
    home.makeLink("to-link", "to-file");
    EXPECT_EQ(typeOf(home / "file", Links::keep), EntryType::regular);
    EXPECT_EQ(typeOf(home / "directory", Links::keep), EntryType::directory);
    for (const char* link : {"to-file", "to-directory", "to-link"}) {
        EXPECT_EQ(typeOf(home / link, Links::keep), EntryType::link);
    }
    EXPECT_EQ(typeOf(home / "to-file", Links::follow), EntryType::regular);
    EXPECT_EQ(typeOf(home / "to-directory", Links::follow), EntryType::directory);
    EXPECT_EQ(typeOf(home / "to-link", Links::follow), EntryType::regular);
    EXPECT_EQ(files.status(home / "to-link", Links::follow)->size, 5U);
    EXPECT_EQ(typeOf(home.makeFifo("fifo"), Links::follow), EntryType::other);
    EXPECT_EQ(typeOf("/dev/null", Links::follow), EntryType::other);
}

TEST(LinuxFileSystem, TellsNothingOfWhatIsNotThere) {
    const TemporaryHome home;
    home.write("file", "");
    home.makeLink("dangling", home / "nothing");
    home.makeLink("circle", home / "circle");
    for (const Links links : {Links::keep, Links::follow}) {
        EXPECT_EQ(files.status("", links), std::nullopt);
        EXPECT_EQ(files.status(home / "nothing", links), std::nullopt);
        EXPECT_EQ(files.status(home / "file/below", links), std::nullopt);
    }
    EXPECT_EQ(files.status(home / "dangling", Links::follow), std::nullopt);
    EXPECT_EQ(files.status(home / "circle", Links::follow), std::nullopt);
    EXPECT_EQ(typeOf(home / "dangling", Links::keep), EntryType::link);
}

TEST(LinuxFileSystem, TellsTheModificationTimeInMicroseconds) {
    const TemporaryHome home;
    const std::string path = home.write("file", "");
    ASSERT_TRUE(setModified(path, 1'748'865'600, 123'456'789));
    const Timestamp expected(std::chrono::microseconds(1'748'865'600'123'456));
    EXPECT_EQ(files.status(path, Links::keep)->modified, expected);
    ASSERT_TRUE(setModified(path, -1, 999'999'999));
    EXPECT_EQ(files.status(path, Links::keep)->modified, Timestamp(std::chrono::microseconds(-1)));
}

TEST(LinuxFileSystem, TellsTheModificationTimeOfALinksTarget) {
    const TemporaryHome home;
    ASSERT_TRUE(setModified(home.write("file", ""), 1'000));
    const std::string link = home.makeLink("link", "file");
    const Timestamp old(std::chrono::seconds(1'000));
    EXPECT_EQ(files.status(link, Links::follow)->modified, old);
    EXPECT_GT(files.status(link, Links::keep)->modified, old);
}

/// Sets a file's time and tells whether its file system kept it.
bool keepsTime(const std::string& path, std::int64_t seconds) {
    struct stat found = {};
    return setModified(path, seconds) && stat(path.c_str(), &found) == 0
           && found.st_mtim.tv_sec == seconds;
}

TEST(LinuxFileSystem, KeepsModificationTimesWithinTheYearsOfATimestamp) {
    const std::string path = "/dev/shm/sallowmere-test-" + std::to_string(getpid());
    std::ofstream(path).close();
    const bool isPossible = keepsTime(path, 1LL << 60);
    if (isPossible) {
        const auto day = std::chrono::days(1);
        EXPECT_GE(files.status(path, Links::keep)->modified, distantFuture);
        EXPECT_LT(files.status(path, Links::keep)->modified, distantFuture + day);
        EXPECT_TRUE(keepsTime(path, -(1LL << 60)));
        EXPECT_GE(files.status(path, Links::keep)->modified, distantPast);
        EXPECT_LT(files.status(path, Links::keep)->modified, distantPast + day);
    }
    std::filesystem::remove(path);
    if (!isPossible) {
        MISSING_FOR_TEST("no file system here keeps times beyond the year 9999")
    }
}

TEST(LinuxFileSystem, TellsTheBirthTimeWhichLaterWritesLeaveAlone) {
    const TemporaryHome home;
    const std::string path = home.write("file", "");
    const std::optional<Timestamp> created = files.status(path, Links::keep)->created;
    if (!created) {
        MISSING_FOR_TEST("the temporary directory's file system knows no birth times")
    }
    ASSERT_TRUE(setModified(path, 2'000'000'000));
    EXPECT_EQ(files.status(path, Links::keep)->created, created);
    EXPECT_NE(files.status(path, Links::keep)->modified, *created);
}

TEST(LinuxFileSystem, TellsNoBirthTimeWhereThereIsNone) {
    EXPECT_EQ(files.status("/proc/self/stat", Links::keep)->created, std::nullopt);
}

TEST(LinuxFileSystem, HasNothingAtAPathWithANul) {
    const auto behindNul = [](const std::string& path) { return path + '\0' + "more"; };
    EXPECT_FALSE(files.list(behindNul("/"), [](std::string_view, EntryType) {}));
    EXPECT_FALSE(files.status(behindNul("/bin/sh"), Links::follow).has_value());
    EXPECT_EQ(files.open(behindNul("/bin/sh")), nullptr);
    EXPECT_FALSE(files.isExecutableFile(behindNul("/bin/sh")));
}

TEST(LinuxFileSystem, OpensRegularFilesAlone) {
    const TemporaryHome home;
    home.write("file", "content");
    EXPECT_NE(files.open(home / "file"), nullptr);
    EXPECT_NE(files.open(home.makeLink("link", "file")), nullptr);
    EXPECT_EQ(files.open(home.makeFifo("x.jsonl")), nullptr);
    EXPECT_EQ(files.open(home.makeLink("to-fifo", "x.jsonl")), nullptr);
    EXPECT_EQ(files.open(home.makeDirectory("directory")), nullptr);
    EXPECT_EQ(files.open(home.makeLink("dangling", "nothing")), nullptr);
    EXPECT_EQ(files.open("/dev/zero"), nullptr);
    EXPECT_EQ(files.open(home / "nothing"), nullptr);
    EXPECT_EQ(files.open(home / "file/below"), nullptr);
    EXPECT_EQ(files.open(""), nullptr);
}

TEST(LinuxFileSystem, OpensNothingThatItMayNot) {
    const TemporaryHome home;
    std::filesystem::permissions(std::filesystem::path(home.path()).parent_path(),
                                 std::filesystem::perms::all);
    const std::string path = home.write("file", "content");
    std::filesystem::permissions(path, std::filesystem::perms::owner_write);
    const Unprivileged user;
    EXPECT_EQ(files.open(path), nullptr);
}

std::optional<std::string> readAt(ReadableFile& file, std::uint64_t offset, std::size_t count) {
    std::string buffer(count, '?');
    const std::optional<std::size_t> read = file.read(offset, buffer);
    if (!read) {
        return std::nullopt;
    }
    return buffer.substr(0, *read);
}

TEST(LinuxFile, ReadsFromAnyOffsetInAnyOrder) {
    const TemporaryHome home;
    const auto file = files.open(home.write("file", std::string_view("a\0b\xFF\n", 5)));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->size(), 5U);
    EXPECT_EQ(readAt(*file, 3, 10), "\xFF\n");
    EXPECT_EQ(readAt(*file, 0, 2), std::string("a\0", 2));
    EXPECT_EQ(readAt(*file, 1, 1), std::string("\0", 1));
    EXPECT_EQ(readAt(*file, 5, 10), "");
    EXPECT_EQ(readAt(*file, 500, 10), "");
}

TEST(LinuxFile, CannotBeReadBeyondTheLargestOffset) {
    const TemporaryHome home;
    const auto file = files.open(home.write("file", "content"));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(readAt(*file, 1ULL << 63, 10), std::nullopt);
}

TEST(LinuxFile, ShowsWhatIsAppendedWhileItIsOpen) {
    const TemporaryHome home;
    const std::string path = home.write("file", "one\n");
    const auto file = files.open(path);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(readAt(*file, 4, 10), "");
    std::ofstream(path, std::ios::app) << "two\n";
    EXPECT_EQ(file->size(), 8U);
    EXPECT_EQ(readAt(*file, 4, 10), "two\n");
    std::filesystem::resize_file(path, 2);
    EXPECT_EQ(file->size(), 2U);
    EXPECT_EQ(readAt(*file, 4, 10), "");
}

TEST(LinuxFile, OutlivesItsName) {
    const TemporaryHome home;
    const std::string path = home.write("file", "content");
    const auto file = files.open(path);
    ASSERT_NE(file, nullptr);
    std::filesystem::remove(path);
    EXPECT_EQ(readAt(*file, 0, 10), "content");
}

TEST(WholeFile, IsReadWhateverItsLength) {
    const TemporaryHome home;
    for (const std::size_t length : {0U, 1U, 65'535U, 65'536U, 65'537U, 200'000U}) {
        const std::string content(length, 'x');
        EXPECT_EQ(readWholeFile(files, home.write("file", content)), content) << length;
    }
    EXPECT_EQ(readWholeFile(files, home / "nothing"), std::nullopt);
    EXPECT_EQ(readWholeFile(files, home.makeDirectory("directory")), std::nullopt);
}

TEST(EndOfFile, IsReadUpToALimit) {
    const TemporaryHome home;
    for (const std::size_t length : {0U, 1U, 65'536U, 200'000U}) {
        const auto file = files.open(home.write("file", "head" + std::string(length, 'x')));
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(readToEnd(*file, 4), std::string(length, 'x')) << length;
        EXPECT_EQ(readToEnd(*file, 4, length), std::string(length, 'x')) << length;
        EXPECT_EQ(readToEnd(*file, 3, length), std::nullopt) << length;
    }
}

TEST(ExecutableFile, IsARegularFileThatMayBeExecuted) {
    const TemporaryHome home;
    home.writeProgram("program");
    home.write("plain", "#!/bin/sh\n");
    home.makeDirectory("directory");
    home.makeLink("link", "program");
    home.makeLink("link-to-plain", "plain");
    home.makeLink("link-to-directory", "directory");
    home.makeLink("dangling", "nothing");
    EXPECT_TRUE(files.isExecutableFile(home / "program"));
    EXPECT_TRUE(files.isExecutableFile(home / "link"));
    EXPECT_TRUE(files.isExecutableFile("/bin/sh"));
    for (const char* other : {"plain", "directory", "link-to-plain", "link-to-directory",
                              "dangling", "nothing", "program/below"}) {
        EXPECT_FALSE(files.isExecutableFile(home / other)) << other;
    }
    EXPECT_FALSE(files.isExecutableFile(""));
    EXPECT_FALSE(files.isExecutableFile("/dev/null"));
}

} // namespace
} // namespace sallowmere
