// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookEvent.h"
#include "Hooks/HookCalls.h"
#include "Hooks/HookHome.h"
#include "Platform/Linux/LinuxClock.h"
#include "RequestFiles.h"
#include "System/Unprivileged.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using namespace hookCalls;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The hook in a shell that opens or limits something for it.
Command inShell(const std::string& script, const std::string& home) {
    Command command = hookCommand(home);
    command.arguments = {"sh", "-c", script, command.program};
    command.program = "/bin/sh";
    return command;
}

/// One of each kind.
std::vector<QJsonObject> eachKind() {
    return {permissionRequest(), question(), notification(), toolUsed()};
}

class HookFailure : public HookHome {
protected:
    /// Every kind of event is passed over without a word.
    void expectSilenceWith(const Command& command) const {
        for (const QJsonObject& event : eachKind()) {
            expectSilence(runWithInput(command, text(event)));
        }
    }
};

TEST_F(HookFailure, IsSilentWhereNoDirectoryCanBeMade) {
    const std::string file = home.write("file", "kept");
    for (const std::string& place : {std::string("/proc"), std::string("/proc/self"),
                                     std::string("/dev/null"), file, file + "/below"}) {
        expectSilenceWith(hookCommand(place));
    }
    EXPECT_THAT(everything(), ElementsAre("file"));
}

TEST_F(HookFailure, MakesNoHomeDirectory) {
    expectSilenceWith(hookCommand(home / "nobody"));
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(HookFailure, TakesNoHomeDirectoryThatDependsOnWhereItRuns) {
    Command command = hookCommand(".");
    command.directory = home.path();
    expectSilenceWith(command);
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(HookFailure, IsSilentWhereSomethingElseIsInTheWay) {
    home.write(".config/sallowmere/notifications", "kept");
    expectSilenceWith(hookCommand(home.path()));
    std::filesystem::remove_all(home / ".config");
    home.write(".config", "kept");
    expectSilenceWith(hookCommand(home.path()));
    EXPECT_THAT(everything(), ElementsAre(".config"));
    std::filesystem::remove(home / ".config");
    home.makeLink(".config/sallowmere/notifications", home / "nothing");
    expectSilenceWith(hookCommand(home.path()));
    EXPECT_FALSE(std::filesystem::exists(home / "nothing"));
}

TEST_F(HookFailure, LeavesNoHalfWrittenFileOnAFullDisk) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer itself needs a file that something fits into";
#endif
    // As far as it can be had without a disk of its own: nothing fits into a file.
    const Command command = inShell("ulimit -f 0; exec \"$0\"", home.path());
    expectSilence(runWithInput(command, text(permissionRequest())));
    expectSilence(runWithInput(command, text(notification())));
    EXPECT_TRUE(std::filesystem::is_directory(directory()));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookFailure, LeavesEverythingAsItIsWhereItMayNotWrite) {
    const std::string own = write("a.json", R"({"session_id":")" + session + "\"}");
    const std::string marker = write(".asked-" + otherSession, "");
    setAge(".asked-" + otherSession, 1'000);
    const std::vector<std::string> before = names();
    std::filesystem::permissions(home.path() + "/..", std::filesystem::perms(0755));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
        std::filesystem::permissions(entry.path(), std::filesystem::perms(0555));
    }
    std::filesystem::permissions(home.path(), std::filesystem::perms(0555));
    {
        const Unprivileged nobody;
        for (const auto kind : {HookEvent::Kind::permission, HookEvent::Kind::question,
                                HookEvent::Kind::reminder, HookEvent::Kind::settled}) {
            RequestFiles::apply({kind, QString::fromStdString(session), "m"}, files, home.path(),
                                linuxClock()());
        }
        EXPECT_EQ(names(), before);
    }
    for (const char* directoryName : {"", ".config", ".config/sallowmere"}) {
        std::filesystem::permissions(home / directoryName, std::filesystem::perms(0755));
    }
    std::filesystem::permissions(directory(), std::filesystem::perms(0755));
}

TEST_F(HookFailure, IsSilentWithoutAHomeDirectory) {
    // With an event that touches nothing: where the user database says, real files are.
    Command command = hookCommand(home.path());
    command.environment = {"PATH=/usr/bin:/bin"};
    expectSilence(runWithInput(command, text(event("SessionStart"))));
    expectSilence(runWithInput(command, "no call"));
    command.environment = {};
    expectSilence(runWithInput(command, text(event("SessionStart"))));
}

TEST_F(HookFailure, NeedsNoOutput) {
    for (const char* script : {"exec \"$0\" >&-", "exec \"$0\" 2>&-", "exec \"$0\" >&- 2>&-"}) {
        expectSilenceWith(inShell(script, home.path()));
        expectSilence(runWithInput(inShell(script, home.path()), text(permissionRequest())));
        EXPECT_THAT(pending(), SizeIs(1)) << script;
        call(toolUsed());
    }
}

TEST_F(HookFailure, NeedsNobodyWhoReadsItsOutput) {
    expectSilence(runWithInput(inShell("\"$0\" | :", home.path()), text(permissionRequest())));
    EXPECT_THAT(pending(), SizeIs(1));
}

TEST_F(HookFailure, DoesNotMindArguments) {
    for (const char* argument : {"--help", "--version", "-h", "x", ""}) {
        Command command = hookCommand(home.path());
        command.arguments.emplace_back(argument);
        expectSilence(runWithInput(command, text(permissionRequest())));
        EXPECT_THAT(pending(), SizeIs(1)) << argument;
        call(toolUsed());
    }
}

TEST_F(HookFailure, KeepsNothingOfItsEnvironment) {
    Command command = hookCommand(home.path());
    command.environment.emplace_back("CLAUDE_CODE_MESSAGING_TOKEN=dark-secret");
    command.environment.emplace_back("CLAUDE_CODE_SESSION_ID=" + otherSession);
    for (const QJsonObject& call : {question(), permissionRequest(), notification()}) {
        expectSilence(runWithInput(command, text(call)));
    }
    ASSERT_THAT(names(), SizeIs(2));
    EXPECT_EQ(names().front(), ".asked-" + session);
    EXPECT_EQ(std::filesystem::file_size(in(names().front())), 0U);
    EXPECT_THAT(shown(), ElementsAre(session + ": Bash: npm test"));
}

} // namespace
} // namespace sallowmere
