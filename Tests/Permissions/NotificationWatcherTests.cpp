// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Permissions/NotificationWatcher.h"

#include "Support/FakeFileSystem.h"
#include "Support/Texts.h"
#include "Support/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string home = "/home/user";
const std::string directory = "/home/user/.config/sallowmere/notifications";
const Timestamp now = at("2026-11-20T12:00:00Z");
constexpr const char* plain = R"({"session_id":"s1"})";

Timestamp ago(double seconds) {
    return advancedBy(now, -seconds);
}

std::string in(const std::string& name) {
    return directory + '/' + name;
}

PermissionRequest named(const std::string& name) {
    return {QString::fromStdString(name), "s1", "m", now};
}

class Notifications : public testing::Test {
protected:
    /// Adds a notification, written so many seconds ago.
    FakeFileSystem::File& add(const std::string& name, const std::string& content, double age = 1) {
        return files.addFile(in(name), content, ago(age));
    }

    std::vector<PermissionRequest> pending() const { return pendingAt(now); }
    std::vector<PermissionRequest> pendingAt(Timestamp moment) const {
        return NotificationWatcher::pending(files, home, moment);
    }

    std::vector<std::string> ids(Timestamp moment = now) const {
        std::vector<std::string> result;
        for (const PermissionRequest& request : pendingAt(moment)) {
            result.push_back(utf8(request.id));
        }
        return result;
    }

    /// The message of the only request.
    std::string messageOf(const std::string& content) {
        add("a.json", content);
        const std::vector<PermissionRequest> requests = pending();
        EXPECT_THAT(requests, SizeIs(1)) << content;
        return requests.empty() ? "(none)" : utf8(requests.front().message);
    }

    bool isThere(const std::string& name) const {
        return files.status(in(name), Links::keep).has_value();
    }

    void expectPassedOver(const std::string& content) {
        add("a.json", content);
        EXPECT_THAT(pending(), IsEmpty()) << content.substr(0, 100);
        EXPECT_TRUE(isThere("a.json")) << content.substr(0, 100);
    }

    FakeFileSystem files;
};

TEST_F(Notifications, AreInTheProgramsConfiguration) {
    EXPECT_EQ(NotificationWatcher::directory(home), directory);
    EXPECT_EQ(NotificationWatcher::directory("/"), "/.config/sallowmere/notifications");
}

TEST_F(Notifications, BecomeRequests) {
    add("abc123.json", R"({"session_id":"5e55","message":"Bash: npm test"})", 10);
    EXPECT_THAT(pending(),
                ElementsAre(PermissionRequest{"abc123.json", "5e55", "Bash: npm test", ago(10)}));
}

TEST_F(Notifications, NeedNoMessage) {
    add("a.json", plain, 10);
    EXPECT_THAT(pending(),
                ElementsAre(PermissionRequest{"a.json", "s1", "Permission requested", ago(10)}));
}

TEST_F(Notifications, HaveTheUsualMessageWhereTheirOwnIsNoText) {
    for (const char* value : {"7", "null", "true", "[]", R"({"text":"x"})", R"(["x"])"}) {
        EXPECT_EQ(messageOf(std::string(R"({"session_id":"s1","message":)") + value + '}'),
                  "Permission requested");
    }
}

TEST_F(Notifications, KeepTheirMessageAsItIs) {
    EXPECT_EQ(messageOf(R"({"session_id":"s1","message":""})"), "");
    EXPECT_EQ(messageOf(R"({"session_id":"s1","message":" <b>a\n\u0007\u001b[31m%s ${HOME} "})"),
              " <b>a\n\u0007\u001b[31m%s ${HOME} ");
    EXPECT_EQ(messageOf("{\"session_id\":\"s1\",\"message\":\"caf\xC3\xA9 \\ud83d\\ude00\"}"),
              "caf\u00E9 \U0001F600");
    EXPECT_EQ(messageOf("{\"session_id\":\"s1\",\"message\":\"caf\xE9!\"}"), "caf\uFFFD!");
}

TEST_F(Notifications, MayHoldMoreThanIsAskedFor) {
    EXPECT_EQ(messageOf(R"( {"cwd":"/w","message":"m","session_id":"s1","n":[1,{"message":2}]} )"
                        "\n"),
              "m");
}

TEST_F(Notifications, ArePassedOverWithoutASession) {
    expectPassedOver("{}");
    expectPassedOver(R"({"message":"x"})");
    expectPassedOver(R"({"sessionId":"s1","SESSION_ID":"s1","message":"x"})");
    for (const char* value : {"42", "null", "true", R"(["s1"])", R"({"session_id":"s1"})"}) {
        expectPassedOver(std::string(R"({"message":"x","session_id":)") + value + '}');
    }
}

TEST_F(Notifications, MayNameASessionWithoutAName) {
    add("a.json", R"({"session_id":""})");
    EXPECT_THAT(pending(),
                ElementsAre(PermissionRequest{"a.json", "", "Permission requested", ago(1)}));
}

TEST_F(Notifications, ArePassedOverWhenTheyAreNoObject) {
    for (const char* content :
         {R"([{"session_id":"s1"}])", R"("session_id")", "1", "null", "true", "", " ", "\n",
          "session_id: s1", "{'session_id':'s1'}", R"({"session_id":"s1",})",
          R"({"session_id":"s1"}})", R"({"session_id":"s1"}{"session_id":"s1"})"}) {
        expectPassedOver(content);
    }
    expectPassedOver(std::string(1'000'000, '['));
    expectPassedOver(std::string(100'000, '\0'));
    expectPassedOver(std::string("\x7F"
                                 "ELF\x02\x01\x01\0\0\xFF\xFE",
                                 11));
}

TEST_F(Notifications, ArePassedOverUntilTheyAreWhole) {
    const std::string content = R"({"session_id":"s1","message":"Bash: \"caf\u00e9\""})";
    for (std::size_t length = 0; length < content.size(); ++length) {
        expectPassedOver(content.substr(0, length));
    }
    add("a.json", content);
    EXPECT_THAT(pending(), SizeIs(1));
}

TEST_F(Notifications, StayPendingHoweverOftenTheyAreRead) {
    add("a.json", plain);
    EXPECT_EQ(pending(), pending());
    EXPECT_THAT(files.removed(), IsEmpty());
}

TEST_F(Notifications, ExpireAfterNinetySeconds) {
    add("a.json", plain, 89.9);
    add("b.json", plain, 89.999'999);
    add("c.json", plain, 90);
    add("d.json", plain, 90.000'001);
    add("e.json", plain, 1'000'000'000);
    EXPECT_THAT(ids(), ElementsAre("a.json", "b.json"));
    EXPECT_THAT(files.removed(), ElementsAre(in("c.json"), in("d.json"), in("e.json")));
    EXPECT_FALSE(isThere("c.json"));
    EXPECT_TRUE(isThere("b.json"));
}

TEST_F(Notifications, ExpireUnread) {
    add("old.json", plain, 90);
    pending();
    EXPECT_THAT(files.opened(), IsEmpty());
}

TEST_F(Notifications, ExpireWhateverIsInThem) {
    add("broken.json", "{", 90);
    add("no-session.json", "{}", 90);
    add("huge.json", std::string(2'000'000, ' '), 90);
    add("unreadable.json", plain, 90).readable = false;
    pending();
    EXPECT_FALSE(isThere("broken.json"));
    EXPECT_FALSE(isThere("no-session.json"));
    EXPECT_FALSE(isThere("huge.json"));
    EXPECT_FALSE(isThere("unreadable.json"));
}

TEST_F(Notifications, ExpireWithoutBeingRequestsWhenTheyCannotBeRemoved) {
    add("a.json", plain, 90).removable = false;
    add("b.json", plain);
    EXPECT_THAT(ids(), ElementsAre("b.json"));
    EXPECT_TRUE(isThere("a.json"));
    files.forget();
    EXPECT_THAT(ids(), ElementsAre("b.json"));
    EXPECT_THAT(files.removed(), ElementsAre(in("a.json")));
    files.file(in("a.json")).removable = true;
    EXPECT_THAT(ids(), ElementsAre("b.json"));
    EXPECT_FALSE(isThere("a.json"));
}

TEST_F(Notifications, MayBeDatedInTheFuture) {
    add("a.json", plain, -1);
    add("b.json", plain, -1'000'000'000);
    EXPECT_THAT(ids(), ElementsAre("b.json", "a.json"));
}

TEST_F(Notifications, SurviveAClockThatStepsBack) {
    add("a.json", plain, 10);
    const Timestamp earlier = now - std::chrono::hours(1);
    EXPECT_THAT(pendingAt(earlier),
                ElementsAre(PermissionRequest{"a.json", "s1", "Permission requested", ago(10)}));
    EXPECT_THAT(ids(ago(10) + std::chrono::seconds(89)), ElementsAre("a.json"));
    EXPECT_THAT(ids(ago(10) + std::chrono::seconds(90)), IsEmpty());
}

TEST_F(Notifications, MayBeOfAnyTime) {
    files.addFile(in("past.json"), plain, distantPast);
    files.addFile(in("future.json"), plain, distantFuture);
    EXPECT_THAT(ids(), ElementsAre("future.json"));
    EXPECT_FALSE(isThere("past.json"));
    EXPECT_THAT(ids(distantPast), ElementsAre("future.json"));
    EXPECT_THAT(ids(distantFuture), ElementsAre("future.json"));
}

TEST_F(Notifications, AreNewestFirst) {
    add("a.json", plain, 30);
    add("b.json", plain, 10);
    add("c.json", plain, 20);
    add("d.json", plain, -5);
    EXPECT_THAT(ids(), ElementsAre("d.json", "b.json", "c.json", "a.json"));
}

TEST_F(Notifications, KeepTheirOrderWhenTheyAreOfOneTime) {
    // More than a sort would leave in order by chance.
    std::vector<std::string> expected;
    for (int number = 100; number < 200; ++number) {
        expected.push_back(std::to_string(number) + ".json");
        add(expected.back(), plain, 10);
    }
    add("500.json", plain, 5);
    expected.insert(expected.begin(), "500.json");
    EXPECT_EQ(ids(), expected);
}

TEST_F(Notifications, AreFilesOfOneExtension) {
    for (const double age : {1, 1'000'000}) {
        for (const char* name : {"a.JSON", "a.Json", "a.json.tmp", "a.json~", "a.jsonl", "ajson",
                                 "json", ".json", "a.", "a", "a.json ", "a.js"}) {
            add(name, plain, age);
        }
        EXPECT_THAT(pending(), IsEmpty());
    }
    EXPECT_THAT(files.opened(), IsEmpty());
    EXPECT_THAT(files.removed(), IsEmpty());
}

TEST_F(Notifications, MayBeHiddenOrHaveSeveralExtensions) {
    add(".a.json", plain, 1);
    add("a.tmp.json", plain, 2);
    add("..json", plain, 3);
    EXPECT_THAT(ids(), ElementsAre(".a.json", "a.tmp.json", "..json"));
}

TEST_F(Notifications, MayHaveAnyName) {
    const std::string odd = "a b\n%2F\"'$(x)\u202E.json";
    add(odd, plain, 2);
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(1));
    EXPECT_EQ(utf8(requests.front().id), odd);
    NotificationWatcher::dismiss(requests.front(), files, home);
    EXPECT_FALSE(isThere(odd));
}

TEST_F(Notifications, WithNamesThatAreNoUtf8CanBeDismissed) {
    const std::string name = "caf\xE9.json";
    add(name, plain);
    add("cafe.json", plain, 2);
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(2));
    EXPECT_EQ(utf8(requests.front().id), "caf\uFFFD.json");
    NotificationWatcher::dismiss(requests.front(), files, home);
    EXPECT_THAT(ids(), ElementsAre("cafe.json"));
    EXPECT_FALSE(isThere(name));
}

TEST_F(Notifications, DoNotLieBelowTheirDirectory) {
    files.addFile(directory + "/below/a.json", plain, now);
    files.addFile(directory + "/below/old.json", plain, ago(100));
    files.addFile(home + "/.config/sallowmere/settings.json", plain, ago(100));
    EXPECT_THAT(pending(), IsEmpty());
    EXPECT_THAT(files.listed(), ElementsAre(directory));
    EXPECT_THAT(files.removed(), IsEmpty());
}

TEST_F(Notifications, AreNoneWithoutADirectory) {
    EXPECT_THAT(pending(), IsEmpty());
    files.addFile(directory, plain, now);
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(Notifications, AreNoneInAnEmptyDirectory) {
    files.addDirectory(directory);
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(Notifications, AreNoneInADirectoryThatCannotBeListed) {
    add("a.json", plain);
    add("old.json", plain, 100);
    files.forbidListing(directory);
    EXPECT_THAT(pending(), IsEmpty());
    EXPECT_THAT(files.removed(), IsEmpty());
}

TEST_F(Notifications, MayLieBehindALink) {
    files.addFile("/elsewhere/a.json", plain, ago(1));
    files.addFile("/elsewhere/old.json", plain, ago(90));
    files.addLink(directory, "/elsewhere");
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(1));
    EXPECT_EQ(files.status("/elsewhere/old.json", Links::keep), std::nullopt);
    NotificationWatcher::dismiss(requests.front(), files, home);
    EXPECT_EQ(files.status("/elsewhere/a.json", Links::keep), std::nullopt);
}

TEST_F(Notifications, AreReceivedNowWhenTheirTimeIsUnknown) {
    add("a.json", plain, 1'000).statusKnown = false;
    EXPECT_THAT(pending(),
                ElementsAre(PermissionRequest{"a.json", "s1", "Permission requested", now}));
}

TEST_F(Notifications, ArePassedOverWhenTheyCannotBeRead) {
    add("closed.json", plain).readable = false;
    add("failing.json", plain).failsAt = 0;
    add("failing-later.json", plain).failsAt = 5;
    files.file(in("failing-later.json")).readLimit = 5;
    add("a.json", plain);
    EXPECT_THAT(ids(), ElementsAre("a.json"));
    EXPECT_THAT(files.removed(), IsEmpty());
}

TEST_F(Notifications, AreReadInPieces) {
    add("a.json", plain).readLimit = 1;
    EXPECT_THAT(ids(), ElementsAre("a.json"));
}

TEST_F(Notifications, MayBeDirectoriesOrFifosInName) {
    files.addDirectory(in("directory.json"));
    files.addFile(in("below.json/inside.json"), plain, now);
    add("fifo.json", plain).type = EntryType::other;
    add("old-fifo.json", plain, 90).type = EntryType::other;
    add("a.json", plain);
    EXPECT_THAT(ids(), ElementsAre("a.json"));
    EXPECT_TRUE(isThere("directory.json"));
    EXPECT_TRUE(isThere("below.json/inside.json"));
    EXPECT_TRUE(isThere("fifo.json"));
    EXPECT_FALSE(isThere("old-fifo.json"));
}

TEST_F(Notifications, OfOneMebibyteAreTheLargest) {
    const std::string start = R"({"session_id":"s1","message":"long","rest":")";
    const auto ofSize = [&](std::size_t size) {
        return start + std::string(size - start.size() - 2, 'x') + "\"}";
    };
    add("a.json", ofSize(1'048'576));
    EXPECT_THAT(ids(), ElementsAre("a.json"));
    files.forget();
    add("a.json", ofSize(1'048'577));
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(files.bytesRead(), 0U);
    EXPECT_TRUE(isThere("a.json"));
}

TEST_F(Notifications, AreNotReadOnAndOnWhenTheirSizeIsUnknown) {
    add("a.json", plain).sizeKnown = false;
    EXPECT_THAT(ids(), ElementsAre("a.json"));
    files.forget();
    add("a.json", plain + std::string(50'000'000, ' ')).sizeKnown = false;
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_LT(files.bytesRead(), 2'000'000U);
}

TEST_F(Notifications, MayBeThousands) {
    for (int number = 0; number < 5'000; ++number) {
        const bool isOld = number % 5 == 0;
        add(std::to_string(number) + ".json", plain, isOld ? 100 + number : 0.001 * number);
    }
    const std::vector<PermissionRequest> requests = pending();
    ASSERT_THAT(requests, SizeIs(4'000));
    EXPECT_EQ(utf8(requests.front().id), "1.json");
    EXPECT_EQ(utf8(requests.back().id), "4999.json");
    EXPECT_THAT(files.removed(), SizeIs(1'000));
}

/// Files vanish between being listed and being looked at, or between that and being opened.
class VanishingFiles : public FakeFileSystem {
public:
    std::string vanishesBeforeStatus;
    std::string vanishesBeforeOpen;

    std::optional<FileStatus> status(const std::string& path, Links links) const override {
        removeIf(path == vanishesBeforeStatus, path);
        return FakeFileSystem::status(path, links);
    }

    std::unique_ptr<ReadableFile> open(const std::string& path) const override {
        removeIf(path == vanishesBeforeOpen, path);
        return FakeFileSystem::open(path);
    }

private:
    void removeIf(bool condition, const std::string& path) const {
        if (condition) {
            removeFile(path);
        }
    }
};

TEST(VanishingNotifications, ArePassedOver) {
    VanishingFiles files;
    for (const char* name : {"a.json", "b.json", "c.json"}) {
        files.addFile(in(name), plain, ago(1));
    }
    files.vanishesBeforeStatus = in("a.json");
    files.vanishesBeforeOpen = in("b.json");
    const auto requests = NotificationWatcher::pending(files, home, now);
    ASSERT_THAT(requests, SizeIs(1));
    EXPECT_EQ(utf8(requests.front().id), "c.json");
}

TEST_F(Notifications, AreGoneOnceDismissed) {
    add("a.json", plain);
    add("b.json", plain);
    NotificationWatcher::dismiss(named("a.json"), files, home);
    EXPECT_THAT(ids(), ElementsAre("b.json"));
    EXPECT_THAT(files.removed(), ElementsAre(in("a.json")));
}

TEST_F(Notifications, MayBeGoneBeforeTheyAreDismissed) {
    NotificationWatcher::dismiss(named("a.json"), files, home);
    add("b.json", plain);
    NotificationWatcher::dismiss(named("a.json"), files, home);
    EXPECT_THAT(ids(), ElementsAre("b.json"));
}

TEST_F(Notifications, ThatCannotBeRemovedStayPending) {
    add("a.json", plain).removable = false;
    NotificationWatcher::dismiss(named("a.json"), files, home);
    EXPECT_THAT(ids(), ElementsAre("a.json"));
}

TEST_F(Notifications, AreDismissedByNameAlone) {
    add("a.json", R"({"session_id":"s2","message":"another"})", 50);
    NotificationWatcher::dismiss(named("a.json"), files, home);
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(Notifications, AreDismissedInTheirDirectoryOnly) {
    const std::string settings = home + "/.config/sallowmere/settings.json";
    files.addFile(settings, "{}", now);
    files.addFile(in("below/a.json"), plain, now);
    for (const std::string id :
         {"../settings.json", "below/a.json", "/etc/passwd", "", ".", ".."}) {
        NotificationWatcher::dismiss(named(id), files, home);
    }
    EXPECT_THAT(files.removed(), Each(Not(HasSubstr("settings"))));
    EXPECT_TRUE(files.status(settings, Links::keep));
    EXPECT_TRUE(isThere("below/a.json"));
}

} // namespace
} // namespace sallowmere
