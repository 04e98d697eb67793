// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Support/Texts.h"
#include "System/TemporaryHome.h"
#include "System/Unprivileged.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* plain = R"({"session_id":"s1"})";

/// Dates an entry, a link itself too.
void setAge(const std::string& path, std::int64_t seconds) {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const timespec time{now - seconds, 0};
    const timespec times[2] = {time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

class NotificationFiles : public testing::Test {
protected:
    static std::string in(const std::string& name) {
        return ".config/sallowmere/notifications/" + name;
    }

    std::vector<PermissionRequest> pending() const {
        return NotificationWatcher::pending(files, home.path(), linuxClock()());
    }

    std::vector<std::string> ids() const {
        std::vector<std::string> result;
        for (const PermissionRequest& request : pending()) {
            result.push_back(utf8(request.id));
        }
        return result;
    }

    bool isThere(const std::string& name) const {
        return files.status(home / in(name), Links::keep).has_value();
    }

    /// Lets any user read whatever there is.
    void showToEverybody() const {
        constexpr std::filesystem::perms all{0755};
        std::filesystem::permissions(home.path() + "/..", all);
        std::filesystem::permissions(home.path(), all);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
            std::filesystem::permissions(entry.path(), all);
        }
    }

    TemporaryHome home;
    LinuxFileSystem files;
};

TEST_F(NotificationFiles, AreRequestsUntilTheyAreOld) {
    home.write(in("new.json"), R"({"session_id":"s1","message":"Bash: make"})");
    setAge(home.write(in("aged.json"), plain), 60);
    setAge(home.write(in("old.json"), plain), 91);
    setAge(home.write(in("old.json.tmp"), plain), 1'000'000);
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(2));
    EXPECT_EQ(utf8(requests.front().id), "new.json");
    EXPECT_EQ(utf8(requests.front().message), "Bash: make");
    EXPECT_EQ(requests.front().receivedAt,
              files.status(home / in("new.json"), Links::keep).value().modified);
    EXPECT_EQ(utf8(requests.back().id), "aged.json");
    EXPECT_FALSE(isThere("old.json"));
    EXPECT_TRUE(isThere("old.json.tmp"));
}

TEST_F(NotificationFiles, AreNotMissedWhereThereIsNoDirectory) {
    EXPECT_THAT(pending(), IsEmpty());
    NotificationWatcher::dismiss({"a.json", "s1", "m", {}}, files, home.path());
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST_F(NotificationFiles, MayBeLinks) {
    const std::string target = home.write("elsewhere/target", plain);
    setAge(target, 1'000);
    home.makeLink(in("link.json"), target);
    setAge(home.makeLink(in("old-link.json"), target), 100);
    setAge(home.makeLink(in("old-dangling.json"), home / "nothing"), 100);
    home.makeLink(in("dangling.json"), home / "nothing");
    home.makeLink(in("circle.json"), home / in("circle.json"));
    home.makeLink(in("device.json"), "/dev/zero");
    EXPECT_THAT(ids(), ElementsAre("link.json"));
    EXPECT_FALSE(isThere("old-link.json"));
    EXPECT_FALSE(isThere("old-dangling.json"));
    EXPECT_TRUE(isThere("dangling.json"));
    NotificationWatcher::dismiss(pending().front(), files, home.path());
    EXPECT_FALSE(isThere("link.json"));
    EXPECT_TRUE(std::filesystem::exists(target));
}

TEST_F(NotificationFiles, AreNeverWaitedForNorEmptied) {
    home.makeFifo(in("fifo.json"));
    setAge(home.makeFifo(in("old-fifo.json")), 100);
    home.write(in("directory.json/inside.json"), plain);
    setAge(home / in("directory.json"), 100);
    setAge(home.makeDirectory(in("empty.json")), 100);
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_TRUE(isThere("fifo.json"));
    EXPECT_FALSE(isThere("old-fifo.json"));
    EXPECT_TRUE(isThere("directory.json/inside.json"));
    EXPECT_TRUE(isThere("empty.json"));
}

TEST_F(NotificationFiles, WithNamesThatAreNoUtf8CanBeDismissed) {
    const std::string name = "caf\xE9\n.json";
    home.write(in(name), plain);
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(1));
    NotificationWatcher::dismiss(requests.front(), files, home.path());
    EXPECT_FALSE(isThere(name));
}

TEST_F(NotificationFiles, MayBeBehindALink) {
    home.write("elsewhere/a.json", plain);
    home.makeLink(".config/sallowmere/notifications", home / "elsewhere");
    EXPECT_THAT(ids(), ElementsAre("a.json"));
    NotificationWatcher::dismiss(pending().front(), files, home.path());
    EXPECT_FALSE(std::filesystem::exists(home / "elsewhere/a.json"));
}

TEST_F(NotificationFiles, ThatMayNotBeRemovedAreNoRequestsOnceOld) {
    home.write(in("a.json"), plain);
    setAge(home.write(in("old.json"), plain), 100);
    showToEverybody();
    std::filesystem::permissions(home / in(""), std::filesystem::perms(0555));
    {
        const Unprivileged nobody;
        EXPECT_THAT(ids(), ElementsAre("a.json"));
        NotificationWatcher::dismiss(pending().front(), files, home.path());
        EXPECT_THAT(ids(), ElementsAre("a.json"));
    }
    EXPECT_TRUE(isThere("old.json"));
    std::filesystem::permissions(home / in(""), std::filesystem::perms(0755));
}

TEST_F(NotificationFiles, MayNotBeReadable) {
    const std::string secret = home.write(in("secret.json"), plain);
    home.write(in("a.json"), plain);
    showToEverybody();
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    {
        const Unprivileged nobody;
        EXPECT_THAT(ids(), ElementsAre("a.json"));
    }
    std::filesystem::permissions(home / in(""), std::filesystem::perms::none);
    {
        const Unprivileged nobody;
        EXPECT_THAT(ids(), IsEmpty());
    }
    std::filesystem::permissions(home / in(""), std::filesystem::perms(0755));
}

TEST_F(NotificationFiles, MayBeThousands) {
    for (int number = 0; number < 2'000; ++number) {
        home.write(in(std::to_string(number) + ".json"), plain);
    }
    EXPECT_THAT(pending(), SizeIs(2'000));
}

} // namespace
} // namespace sallowmere
