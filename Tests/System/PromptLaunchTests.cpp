// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/PromptRunTest.h"

#include "Support/Missing.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <unistd.h>

namespace sallowmere {
namespace {

/// Files that somebody forbids to execute right after it was asked whether they may be.
class FickleFiles : public LinuxFileSystem {
public:
    bool isExecutableFile(const std::string& path) const override {
        const bool executable = LinuxFileSystem::isExecutableFile(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_read);
        return executable;
    }
};

/// Files of which one goes right after it was asked for.
class FleetingFiles : public LinuxFileSystem {
public:
    std::optional<FileStatus> status(const std::string& path, Links links) const override {
        const auto found = LinuxFileSystem::status(path, links);
        if (path.ends_with("/fleeting")) {
            std::filesystem::remove(path);
        }
        return found;
    }
};

class PromptLaunch : public PromptRunTest {
protected:
    /// Puts something else in the assistant's place.
    void replaceAssistant(std::string_view content) {
        std::filesystem::remove(assistant.path());
        assistant.home().write(".local/bin/claude", content);
        std::filesystem::permissions(assistant.path(), std::filesystem::perms::owner_all);
    }

    /// What a launch that fails for this reason reports.
    std::string failure(const std::string& reason) {
        return "failed to launch claude: " + assistant.path() + ": " + reason;
    }

    SessionInfo sessionIn(const std::string& directory) {
        SessionInfo where = session("refused");
        where.cwd = QString::fromStdString(directory);
        return where;
    }
};

class PromptLaunchFromAnOddHome : public PromptRunTest {
protected:
    PromptLaunchFromAnOddHome() : PromptRunTest("caf\xE9 \xFF") {}
};

TEST_F(PromptLaunch, NeedsAnAssistant) {
    std::filesystem::remove(assistant.path());
    for (const char* place : {"/opt/homebrew/bin/claude", "/usr/local/bin/claude"}) {
        if (files->isExecutableFile(place)) {
            MISSING_FOR_TEST("a machine without an assistant for all users");
        }
    }
    EXPECT_EQ(refusal(),
              "claude binary not found \xE2\x80\x94 set \"claudeBinary\" in settings.json");
}

TEST_F(PromptLaunch, FailsWithWhatIsNoProgram) {
    replaceAssistant("This is not a program.\n");
    EXPECT_EQ(refusal(), failure("Exec format error"));
    replaceAssistant("");
    EXPECT_EQ(refusal(), failure("Exec format error"));
    replaceAssistant("#!/nowhere/shell\n");
    EXPECT_EQ(refusal(), failure("No such file or directory"));
}

TEST_F(PromptLaunch, FailsWhenThePermissionIsLostMeanwhile) {
    replaceAssistant("#!/bin/sh\n");
    files = std::make_unique<FickleFiles>();
    EXPECT_EQ(refusal(), failure("Permission denied"));
}

TEST_F(PromptLaunch, FailsWithAPromptBeyondTheKernelsLimit) {
    const auto tooMuch = 32 * sysconf(_SC_PAGESIZE);
    EXPECT_EQ(refusal(QString(tooMuch, u'x')), failure("Argument list too long"));
}

TEST_F(PromptLaunch, FailsRatherThanPassHalfAText) {
    EXPECT_EQ(refusal(QStringLiteral("half") + QChar(0) + QStringLiteral("and half")),
              failure("Invalid argument"));
    SessionInfo other = session("refused");
    other.sessionId += QChar(0);
    EXPECT_EQ(refusal(QStringLiteral("Hello"), other), failure("Invalid argument"));
}

TEST_F(PromptLaunch, FailsInADirectoryThatIsAFile) {
    const std::string file = assistant.home().write("file", "");
    EXPECT_EQ(refusal(QStringLiteral("Hello"), sessionIn(file)),
              "failed to launch claude: " + file + ": Not a directory");
}

TEST_F(PromptLaunch, FailsInADirectoryThatGoesMeanwhile) {
    files = std::make_unique<FleetingFiles>();
    const std::string directory = assistant.home().makeDirectory("fleeting");
    EXPECT_EQ(refusal(QStringLiteral("Hello"), sessionIn(directory)),
              "failed to launch claude: " + directory + ": No such file or directory");
}

TEST_F(PromptLaunch, IsPossibleAgainAfterAFailure) {
    EXPECT_NE(refusal(QString(QChar(0))), std::nullopt);
    EXPECT_EQ(outcomeOf("exit 7"), "claude exited with status 7");
}

TEST_F(PromptLaunch, PrefersTheUsersChoice) {
    const std::string chosen = assistant.home().write("mine/claude", "#!/bin/sh\nexit 77\n");
    std::filesystem::permissions(chosen, std::filesystem::perms::owner_all);
    settings.claudeBinary = "~/mine/claude";
    EXPECT_EQ(outcomeOf(""), "claude exited with status 77");
    settings.claudeBinary = "~/mine/nothing";
    EXPECT_EQ(outcomeOf("exit 78"), "claude exited with status 78");
}

TEST_F(PromptLaunch, LeavesNothingOpen) {
    const auto openDescriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    EXPECT_EQ(outcomeOf(""), std::nullopt);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto before = openDescriptors();
    EXPECT_EQ(outcomeOf("exit 3"), "claude exited with status 3");
    EXPECT_NE(refusal(QString(200'000, u'x')), std::nullopt);
    EXPECT_NE(refusal(QStringLiteral("Hello"), sessionIn(assistant.path())), std::nullopt);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PromptLaunchFromAnOddHome, TakesPathsAsBytes) {
    EXPECT_EQ(outcomeOf("exit 5"), "claude exited with status 5");
    EXPECT_THAT(
        assistant.call("abc").environment,
        testing::Contains(testing::StartsWith("PATH=" + assistant.home().path() + "/.local/bin:")));
}

} // namespace
} // namespace sallowmere
