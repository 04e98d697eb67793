// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Settings/Settings.h"
#include "System/NewFileMask.h"
#include "System/Unprivileged.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include <sys/resource.h>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view settingsTemplate =
    "{\n  \"usageAPIEnabled\": true,\n  \"fiveHourLimit\": 50000000,\n"
    "  \"weeklyLimit\": 350000000,\n  \"weightInput\": 1.0,\n  \"weightOutput\": 5.0,\n"
    "  \"weightCacheCreate\": 1.25,\n  \"weightCacheRead\": 0.1,\n  \"showIdleHours\": 12,\n"
    "  \"maxSessions\": 8,\n  \"wingWidth\": 96\n}";

const std::string three = R"({"maxSessions":3})";
const std::string four = R"({"maxSessions":4})";

constexpr fs::perms userOnly = fs::perms::owner_read | fs::perms::owner_write;

class SettingsFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(directory.isValid()); }

    Settings load() const { return Settings::load(LinuxFileSystem(), home); }

    static void write(const fs::path& path, const std::string& text) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }

    static std::string content(const fs::path& path) {
        return readWholeFile(LinuxFileSystem(), path).value_or("(no file)");
    }

    Unprivileged user;
    QTemporaryDir directory;
    std::string home = directory.path().toStdString();
    fs::path path = fs::path(home) / ".config/sallowmere/settings.json";
    fs::path legacy = fs::path(home) / ".config/velm-askrow/settings.json";
};

TEST_F(SettingsFile, IsWrittenFromTheTemplateWhenMissing) {
    ASSERT_EQ(settingsTemplate.size(), 248U);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(content(path), settingsTemplate);
    EXPECT_EQ(load(), Settings::defaults(home));
}

TEST_F(SettingsFile, IsTheUsersAloneHoweverItCame) {
    const NewFileMask everybody(0);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(fs::status(path).permissions(), userOnly);
    EXPECT_EQ(fs::status(path.parent_path()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(path.parent_path().parent_path()).permissions(), fs::perms::owner_all);
    fs::remove_all(path.parent_path());
    write(legacy, three);
    load();
    EXPECT_EQ(fs::status(path).permissions(), userOnly);
    EXPECT_EQ(fs::status(path.parent_path()).permissions(), fs::perms::owner_all);
}

TEST_F(SettingsFile, LeavesTheDirectoriesThatAreThereAsTheyAre) {
    fs::create_directories(path.parent_path());
    fs::permissions(path.parent_path(), fs::perms::owner_all | fs::perms::group_read);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(fs::status(path.parent_path()).permissions(),
              fs::perms::owner_all | fs::perms::group_read);
}

TEST_F(SettingsFile, IsNeverWrittenOver) {
    for (const std::string& text : {three, std::string(), std::string("broken")}) {
        write(path, text);
        Settings::writeTemplateIfMissing(home);
        EXPECT_EQ(content(path), text);
    }
}

TEST_F(SettingsFile, IsLeftMissingByLoading) {
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_FALSE(fs::exists(fs::path(home) / ".config"));
}

TEST_F(SettingsFile, IsReadThroughALink) {
    write(fs::path(home) / "elsewhere.json", three);
    fs::create_directories(path.parent_path());
    fs::create_symlink(fs::path(home) / "elsewhere.json", path);
    EXPECT_EQ(load().maxSessions, 3);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(content(path), three);
}

TEST_F(SettingsFile, IsCopiedFromTheLegacyPlaceByLoading) {
    write(legacy, three);
    EXPECT_EQ(load().maxSessions, 3);
    EXPECT_EQ(content(path), three);
    EXPECT_EQ(content(legacy), three);
}

TEST_F(SettingsFile, IsCopiedOnce) {
    write(legacy, three);
    load();
    write(legacy, four);
    EXPECT_EQ(load().maxSessions, 3);
}

TEST_F(SettingsFile, IsCopiedAsItIsEvenWhenItIsBroken) {
    write(legacy, "broken");
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_EQ(content(path), "broken");
}

TEST_F(SettingsFile, OutranksTheLegacyOne) {
    write(legacy, three);
    write(path, four);
    EXPECT_EQ(load().maxSessions, 4);
    EXPECT_EQ(content(path), four);
}

TEST_F(SettingsFile, WrittenFromTheTemplateFirstKeepsTheLegacyOneFromBeingCopied) {
    write(legacy, three);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_EQ(content(path), settingsTemplate);
    EXPECT_EQ(content(legacy), three);
}

TEST_F(SettingsFile, ThatIsADirectoryGivesTheDefaults) {
    fs::create_directories(path);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_TRUE(fs::is_directory(path));
}

TEST_F(SettingsFile, ThatIsAFifoGivesTheDefaults) {
    fs::create_directories(path.parent_path());
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
}

TEST_F(SettingsFile, OfTheLegacyPlaceThatIsNoFileIsNotCopied) {
    fs::create_directories(legacy);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_FALSE(fs::exists(path));
    fs::remove(legacy);
    ASSERT_EQ(mkfifo(legacy.c_str(), 0600), 0);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(SettingsFile, WithoutAPlaceForItGivesTheDefaults) {
    // A file stands where the directory would be made.
    write(fs::path(home) / ".config", "in the way");
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_EQ(content(fs::path(home) / ".config"), "in the way");
}

TEST_F(SettingsFile, ThatCannotBeCopiedGivesTheDefaults) {
    write(legacy, three);
    write(path.parent_path(), "in the way");
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_EQ(content(legacy), three);
}

TEST_F(SettingsFile, WithoutPermissionGivesTheDefaults) {
    write(path, three);
    fs::permissions(path, fs::perms::none);
    EXPECT_EQ(load(), Settings::defaults(home));
    fs::permissions(path, fs::perms::owner_all);
    fs::permissions(path.parent_path(), fs::perms::none);
    EXPECT_EQ(load(), Settings::defaults(home));
    fs::permissions(path.parent_path(), fs::perms::owner_all);
}

TEST_F(SettingsFile, IsNotWrittenWithoutPermission) {
    fs::permissions(home, fs::perms::owner_read | fs::perms::owner_exec);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_FALSE(fs::exists(path));
    fs::permissions(home, fs::perms::owner_all);
}

/// No file can get anything in it, as on a disk that is full.
class NoRoom {
public:
    NoRoom() {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit nothing{0, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &nothing), 0);
    }
    NoRoom(const NoRoom&) = delete;
    NoRoom& operator=(const NoRoom&) = delete;
    ~NoRoom() {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0);
        std::signal(SIGXFSZ, signal_);
    }

private:
    rlimit before_{};
    void (*signal_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST_F(SettingsFile, IsWrittenWholeOrNotAtAll) {
    {
        const NoRoom full;
        Settings::writeTemplateIfMissing(home);
    }
    EXPECT_TRUE(fs::is_empty(path.parent_path()));
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(content(path), settingsTemplate);
}

TEST_F(SettingsFile, IsCopiedWholeOrNotAtAll) {
    write(legacy, three);
    {
        const NoRoom full;
        EXPECT_EQ(load(), Settings::defaults(home));
    }
    EXPECT_TRUE(fs::is_empty(path.parent_path()));
    EXPECT_EQ(load().maxSessions, 3);
    EXPECT_EQ(content(path), three);
}

TEST_F(SettingsFile, IsNotMadeWhereALinkLeadsNowhereForNow) {
    fs::create_directories(path.parent_path());
    fs::create_symlink(fs::path(home) / "elsewhere.json", path);
    Settings::writeTemplateIfMissing(home);
    EXPECT_EQ(load(), Settings::defaults(home));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_FALSE(fs::exists(path));
}

} // namespace
} // namespace sallowmere
