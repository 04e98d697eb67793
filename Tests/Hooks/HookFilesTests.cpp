// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/HookCalls.h"
#include "Hooks/HookHome.h"
#include "RequestFiles.h"
#include "Support/Texts.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include <sys/stat.h>

namespace sallowmere {
namespace {

using namespace hookCalls;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

const std::string uuid = "[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}";

mode_t modeOf(const std::string& path) {
    struct stat found = {};
    EXPECT_EQ(stat(path.c_str(), &found), 0) << path;
    return found.st_mode & 07777U;
}

/// A shell that does something first and becomes the hook then.
Command after(const std::string& preparation, const std::string& home) {
    Command command = hookCommand(home);
    command.arguments = {"sh", "-c", preparation + "; exec \"$0\"", command.program};
    command.program = "/bin/sh";
    return command;
}

class HookFiles : public HookHome {};

TEST_F(HookFiles, AreNamedAfterTheirSession) {
    call(permissionRequest());
    EXPECT_THAT(names(), ElementsAre(MatchesRegex(session + "-" + uuid + "\\.json")));
}

TEST_F(HookFiles, HoldTheSessionAndTheMessageOnly) {
    call(permissionRequest());
    std::ifstream stream(in(names().front()));
    const std::string content(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(content, R"({"message":"Bash: npm test","session_id":")" + session + "\"}\n");
}

TEST_F(HookFiles, AreForTheirUserAlone) {
    for (const char* mask : {"umask 0", "umask 022", "umask 777"}) {
        expectSilence(runWithInput(after(mask, home.path()), text(permissionRequest())));
        expectSilence(runWithInput(after(mask, home.path()), text(question())));
        ASSERT_THAT(names(), SizeIs(2)) << mask;
        for (const std::string& name : names()) {
            EXPECT_EQ(modeOf(in(name)), 0600U) << mask;
        }
        EXPECT_EQ(modeOf(directory()), 0700U) << mask;
        EXPECT_EQ(modeOf(home / ".config/sallowmere"), 0700U) << mask;
        EXPECT_EQ(modeOf(home / ".config"), 0700U) << mask;
        std::filesystem::remove_all(home / ".config");
    }
}

TEST_F(HookFiles, AreForTheirUserAloneWhoeverWritesThem) {
    const mode_t before = umask(0);
    RequestFiles::apply({HookEvent::Kind::permission, "s1", "m"}, files, home.path(), {});
    umask(before);
    ASSERT_THAT(names(), SizeIs(1));
    EXPECT_EQ(modeOf(in(names().front())), 0600U);
    EXPECT_EQ(modeOf(directory()), 0700U);
    EXPECT_EQ(modeOf(home / ".config"), 0700U);
}

TEST_F(HookFiles, LeaveDirectoriesAsTheyAre) {
    home.makeDirectory(".config/sallowmere/notifications");
    const std::string config = home / ".config";
    std::filesystem::permissions(config, std::filesystem::perms(0755));
    std::filesystem::permissions(directory(), std::filesystem::perms(0750));
    call(permissionRequest());
    EXPECT_THAT(names(), SizeIs(1));
    EXPECT_EQ(modeOf(config), 0755U);
    EXPECT_EQ(modeOf(directory()), 0750U);
}

TEST_F(HookFiles, AreAsManyAsThereAreCallsAtOnce) {
    constexpr int calls = 50;
    std::vector<std::thread> callers;
    callers.reserve(calls);
    for (int number = 0; number < calls; ++number) {
        callers.emplace_back([this] { call(permissionRequest()); });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_THAT(shown(), AllOf(SizeIs(calls), Each(session + ": Bash: npm test")));
    EXPECT_THAT(names(), AllOf(SizeIs(calls), Each(MatchesRegex(".*\\.json"))));
}

TEST_F(HookFiles, OfManySessionsAtOnceDoNotTouchEachOther) {
    constexpr int sessions = 25;
    std::vector<std::thread> callers;
    callers.reserve(sessions);
    for (int number = 0; number < sessions; ++number) {
        callers.emplace_back([this, number] {
            const std::string id = "s" + std::to_string(number);
            call(permissionRequest({}, id));
            call(question(id));
            call(event("Stop", {}, id));
            if (number == 7) {
                call(permissionRequest({}, id));
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_THAT(names(), ElementsAre(MatchesRegex("s7-" + uuid + "\\.json")));
}

TEST_F(HookFiles, StayInTheirDirectoryWhateverTheSessionIsCalled) {
    home.write("settings.json", "kept");
    const std::vector<std::string> before = everything();
    for (const std::string& id : std::vector<std::string>{
             "../../settings", "/tmp/x", "a/b", "..", ".", "x.json", ".hidden", "a\nb", "a b",
             "-rf", "*", "%s%n", "caf\u00E9", std::string("a\0b", 3), std::string(10'000, 'x'),
             std::string(10'000, '/'), std::string(60'000, '\x01')}) {
        call(permissionRequest({}, id));
        ASSERT_THAT(names(), ElementsAre(MatchesRegex("[A-Za-z0-9_-]{1,64}-" + uuid + "\\.json")));
        ASSERT_THAT(pending(), SizeIs(1));
        EXPECT_EQ(utf8(pending().front().sessionId), id);
        call(question(id));
        EXPECT_THAT(names(), SizeIs(2));
        call(event("SessionEnd", {}, id));
        EXPECT_THAT(names(), IsEmpty());
        std::filesystem::remove_all(home / ".config");
        EXPECT_EQ(everything(), before);
    }
}

TEST_F(HookFiles, OfASessionThatIsNoUtf8AreItsOwn) {
    std::string input = text(permissionRequest({}, "caf!"));
    input.replace(input.find("caf!"), 4, "caf\xE9");
    callWith(input);
    EXPECT_THAT(shown(), ElementsAre("caf\uFFFD: Bash: npm test"));
    input = text(event("Stop", {}, "caf!"));
    input.replace(input.find("caf!"), 4, "caf\xE9");
    callWith(input);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookFiles, OfSessionsWithSimilarNamesDoNotTouchEachOther) {
    for (const char* id : {"a/b", "a_b", "a.b", "a b", "A_B"}) {
        call(permissionRequest({}, id));
        call(question(id));
    }
    call(event("Stop", {}, "a/b"));
    EXPECT_THAT(names(), SizeIs(8));
    EXPECT_THAT(shown(), ElementsAre("A_B: Bash: npm test", "a b: Bash: npm test",
                                     "a.b: Bash: npm test", "a_b: Bash: npm test"));
    call(notification({}, "a.b"));
    EXPECT_THAT(names(), SizeIs(8));
}

TEST_F(HookFiles, MayLieBehindALink) {
    home.makeDirectory("elsewhere");
    home.makeLink(".config/sallowmere/notifications", home / "elsewhere");
    call(permissionRequest());
    EXPECT_THAT(shown(), ElementsAre(session + ": Bash: npm test"));
    EXPECT_THAT(everything(),
                ElementsAre(".config", ".config/sallowmere", ".config/sallowmere/notifications",
                            "elsewhere", MatchesRegex("elsewhere/" + session + ".*\\.json")));
    call(question());
    call(toolUsed());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookFiles, AreRemovedAsLinksWithoutWhatTheyPointTo) {
    const std::string own = R"({"session_id":")" + session + "\"}";
    const std::string outside = home.write("outside.json", own);
    home.makeDirectory(".config/sallowmere/notifications");
    std::filesystem::create_symlink(outside, in("link.json"));
    std::filesystem::create_symlink(outside, in(".asked-" + session));
    call(toolUsed());
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(outside));
}

TEST_F(HookFiles, DoNotFollowALinkInTheMarkersPlace) {
    const std::string outside = home.write("outside", "kept");
    home.makeDirectory(".config/sallowmere/notifications");
    std::filesystem::create_symlink(outside, in(".asked-" + session));
    call(question());
    EXPECT_FALSE(std::filesystem::is_symlink(in(".asked-" + session)));
    EXPECT_EQ(std::filesystem::file_size(outside), 4U);
}

TEST_F(HookFiles, MayHaveStrangeNeighbours) {
    home.makeFifo(".config/sallowmere/notifications/fifo.json");
    home.makeDirectory(".config/sallowmere/notifications/directory.json");
    home.makeDirectory(".config/sallowmere/notifications/.asked-" + otherSession);
    home.makeDirectory(".config/sallowmere/notifications/.new-directory");
    write("broken.json", "{\"session_id\":");
    write("binary.json", std::string("\0\xFF\xFE", 3));
    write("huge.json", std::string(2'000'000, '{'));
    write("caf\xE9.json", R"({"session_id":")" + session + "\"}");
    call(permissionRequest());
    EXPECT_THAT(pending(), SizeIs(2));
    call(notification());
    EXPECT_THAT(pending(), SizeIs(2));
    call(toolUsed());
    EXPECT_THAT(pending(), IsEmpty());
    EXPECT_THAT(names(), SizeIs(7));
    // Something that no file can replace.
    call(question(otherSession));
    EXPECT_THAT(names(), SizeIs(7));
}

TEST_F(HookFiles, MayBeThousands) {
    for (int number = 0; number < 1'000; ++number) {
        const std::string& owner = number % 2 == 0 ? session : otherSession;
        write(std::to_string(number) + ".json", R"({"session_id":")" + owner + "\"}");
    }
    call(notification());
    EXPECT_THAT(names(), SizeIs(1'000));
    call(toolUsed());
    EXPECT_THAT(names(), SizeIs(500));
}

} // namespace
} // namespace sallowmere
