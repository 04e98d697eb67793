// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/PromptRunner.h"

#include "Support/FakeFileSystem.h"
#include "Support/FakeProgramRunner.h"
#include "Support/FakeQueues.h"
#include "Support/Texts.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using testing::StartsWith;

const QString combiningAcute(QChar(0x0301));

class PromptSending : public testing::Test {
protected:
    PromptSending() {
        files.addFile("/opt/homebrew/bin/claude", "").executable = true;
        session.sessionId = QStringLiteral("abc");
    }

    PromptRunner::Services services() { return {files, programs, "/home/u", fileQueue, mainQueue}; }

    void post(const QString& prompt) {
        PromptRunner::send(
            prompt, session, settings, services(),
            [this](const std::optional<QString>& error) { completions.push_back(utf8(error)); });
    }

    void runQueues() {
        fileQueue.runAll();
        mainQueue.runAll();
    }

    void send(const QString& prompt = QStringLiteral("Hello")) {
        post(prompt);
        runQueues();
    }

    /// How a run that ended like this is reported.
    std::optional<std::string> report(int status, const std::string& errors) {
        completions.clear();
        send();
        programs.end(programs.started.size() - 1, {status, errors});
        EXPECT_EQ(completions.size(), 1U);
        return completions.empty() ? "no completion" : completions.front();
    }

    FakeFileSystem files;
    FakeProgramRunner programs;
    FakeWorkQueue fileQueue;
    FakeWorkQueue mainQueue;
    Settings settings = Settings::defaults("/home/u");
    SessionInfo session;
    std::vector<std::optional<std::string>> completions;
};

TEST_F(PromptSending, StartsTheAssistantWithItsArguments) {
    settings.resumePermissionMode = QStringLiteral("plan");
    send(QStringLiteral("-rf \"grüße\"\n"));
    ASSERT_EQ(programs.started.size(), 1U);
    const Program& program = programs.started.front();
    EXPECT_EQ(program.path, "/opt/homebrew/bin/claude");
    EXPECT_THAT(program.arguments, ElementsAre("-p", "--resume", "abc", "--fork-session",
                                               "--permission-mode", "plan", "--",
                                               "-rf \"gr\xC3\xBC\xC3\x9F"
                                               "e\"\n"));
    EXPECT_EQ(program.keptErrorBytes, 65'536U);
    EXPECT_TRUE(completions.empty());
}

TEST_F(PromptSending, TakesNoOptionForASessionsId) {
    for (const char* id : {"--dangerously-skip-permissions", "-p", "-"}) {
        session.sessionId = QString::fromUtf8(id);
        send();
    }
    EXPECT_TRUE(programs.started.empty());
    EXPECT_THAT(completions, Each("claude cannot resume a session with such an id"));
    EXPECT_EQ(completions.size(), 3U);
}

TEST_F(PromptSending, HandsOverItsEnvironmentWithAPathOfItsOwn) {
    programs.variables = {"LANG=C", "PATH=/a:/b", "EMPTY="};
    send();
    EXPECT_THAT(programs.started.front().environment,
                ElementsAre("LANG=C", "EMPTY=",
                            "PATH=/opt/homebrew/bin:/usr/local/bin:/opt/homebrew/bin:"
                            "/home/u/.local/bin:/a:/b"));
}

TEST_F(PromptSending, RunsInTheSessionsDirectoryWhileThatExists) {
    files.addDirectory("/home/u/project");
    session.cwd = QStringLiteral("/home/u/project");
    send();
    EXPECT_EQ(programs.started.back().directory, "/home/u/project");
    session.cwd = QStringLiteral("/home/u/gone");
    send();
    EXPECT_EQ(programs.started.back().directory, std::nullopt);
    session.cwd = std::nullopt;
    send();
    EXPECT_EQ(programs.started.back().directory, std::nullopt);
}

TEST_F(PromptSending, RunsInNoDirectoryBesideWhereThisProgramRuns) {
    files.addDirectory("project");
    session.cwd = QStringLiteral("project");
    send();
    EXPECT_EQ(programs.started.back().directory, std::nullopt);
}

TEST_F(PromptSending, TakesAnEntryThatIsNoDirectoryForOne) {
    files.addFile("/home/u/file", "");
    session.cwd = QStringLiteral("/home/u/file");
    send();
    EXPECT_EQ(programs.started.back().directory, "/home/u/file");
}

TEST_F(PromptSending, FollowsLinksToTheSessionsDirectory) {
    files.addDirectory("/data/project");
    files.addLink("/home/u/linked", "/data/project");
    files.addLink("/home/u/dangling", "/data/gone");
    session.cwd = QStringLiteral("/home/u/linked");
    send();
    EXPECT_EQ(programs.started.back().directory, "/home/u/linked");
    session.cwd = QStringLiteral("/home/u/dangling");
    send();
    EXPECT_EQ(programs.started.back().directory, std::nullopt);
}

TEST_F(PromptSending, LooksForFilesOnTheirQueueAlone) {
    session.cwd = QStringLiteral("/home/u/project");
    post(QStringLiteral("Hello"));
    EXPECT_EQ(mainQueue.waiting(), 0U);
    files.addDirectory("/home/u/project");
    files.addFile("/home/u/.local/bin/claude", "").executable = true;
    fileQueue.runAll();
    EXPECT_THAT(programs.started, IsEmpty());
    files.remove("/home/u/.local/bin/claude");
    mainQueue.runAll();
    ASSERT_EQ(programs.started.size(), 1U);
    EXPECT_EQ(programs.started.front().path, "/home/u/.local/bin/claude");
    EXPECT_EQ(programs.started.front().directory, "/home/u/project");
}

TEST_F(PromptSending, GoesByWhatItWasCalledWith) {
    post(QStringLiteral("Hello"));
    settings.resumePermissionMode = QStringLiteral("other");
    session.sessionId = QStringLiteral("other");
    runQueues();
    EXPECT_THAT(programs.started.front().arguments, Not(Contains("other")));
}

TEST_F(PromptSending, SaysThatThereIsNoAssistantBeforeAnythingElse) {
    files.remove("/opt/homebrew/bin/claude");
    session.sessionId = QStringLiteral("-p");
    send();
    EXPECT_THAT(completions, ElementsAre(Optional(StartsWith("claude binary not found"))));
}

TEST_F(PromptSending, SaysThatThereIsNoAssistant) {
    files.remove("/opt/homebrew/bin/claude");
    send();
    EXPECT_THAT(completions,
                ElementsAre("claude binary not found \xE2\x80\x94 set \"claudeBinary\" in "
                            "settings.json"));
    EXPECT_TRUE(programs.started.empty());
}

TEST_F(PromptSending, SaysThatTheAssistantCannotBeStarted) {
    programs.obstacle = "caf\xE9: no";
    send();
    EXPECT_THAT(completions, ElementsAre("failed to launch claude: caf\xEF\xBF\xBD: no"));
}

TEST_F(PromptSending, SucceedsWithStatusZeroWhateverWasPrinted) {
    EXPECT_EQ(report(0, ""), std::nullopt);
    EXPECT_EQ(report(0, "a warning\n"), std::nullopt);
}

TEST_F(PromptSending, ReportsTheStatusOfASilentFailure) {
    EXPECT_EQ(report(2, ""), "claude exited with status 2");
    EXPECT_EQ(report(255, " \t\r\n\xE2\x80\xA8\xC2\xA0"), "claude exited with status 255");
}

TEST_F(PromptSending, ReportsWhatAFailurePrintedTrimmed) {
    EXPECT_EQ(report(1, "No conversation found"), "No conversation found");
    EXPECT_EQ(report(1, "\n  \t one\n two \r\n\xC2\xA0\n"), "one\n two");
    EXPECT_EQ(report(143, "a\xFF"
                          "b\xC3"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
}

TEST_F(PromptSending, ReportsTheLastTwoHundredCharacters) {
    const std::string last200(200, 'x');
    EXPECT_EQ(report(1, last200), last200);
    EXPECT_EQ(report(1, 'a' + last200), last200);
    EXPECT_EQ(report(1, std::string(60'000, 'a') + last200 + "\n\n"), last200);
    EXPECT_EQ(report(1, 'a' + std::string(200, ' ') + "b").value(), std::string(199, ' ') + 'b');
}

TEST_F(PromptSending, CountsCharactersAsPeopleDo) {
    const QString cluster = u'e' + combiningAcute.repeated(3);
    EXPECT_EQ(report(1, utf8(QStringLiteral("abc") + cluster.repeated(199) + u'z')),
              utf8(cluster.repeated(199) + u'z'));
}

TEST_F(PromptSending, TellsEachRunsEndToItsOwnCompletion) {
    std::vector<std::string> ends;
    for (const QString& name : {QStringLiteral("first"), QStringLiteral("second")}) {
        PromptRunner::send(name, session, settings, services(),
                           [&ends, name](const std::optional<QString>& error) {
                               ends.push_back(utf8(name) + ": " + utf8(error).value_or("well"));
                           });
    }
    runQueues();
    programs.end(1, {0, ""});
    programs.end(0, {3, ""});
    EXPECT_THAT(ends, ElementsAre("second: well", "first: claude exited with status 3"));
}

TEST(PromptEnvironment, PutsTheUsualPlacesBeforeTheInheritedPath) {
    struct Row {
        const char* binary;
        const char* home;
        std::vector<std::string> inherited;
        const char* path;
    };
    for (const Row& row : {
             Row{"/opt/homebrew/bin/claude",
                 "/home/u",
                 {},
                 "PATH=/opt/homebrew/bin:/usr/local/bin:/opt/homebrew/bin:/home/u/.local/bin:"
                 "/usr/bin:/bin"},
             Row{"/home/u/.local/bin/claude",
                 "/home/u",
                 {"PATH=/usr/local/bin:/bin"},
                 "PATH=/home/u/.local/bin:/usr/local/bin:/opt/homebrew/bin:/home/u/.local/bin:"
                 "/usr/local/bin:/bin"},
             // An empty one counts: its empty entry means the working directory.
             Row{"/b/claude",
                 "/h",
                 {"PATH="},
                 "PATH=/b:/usr/local/bin:/opt/homebrew/bin:/h/.local/bin:"},
             Row{"/claude",
                 "/h\xE9",
                 {"PATH=/x\xFF"},
                 "PATH=/:/usr/local/bin:/opt/homebrew/bin:/h\xE9/.local/bin:/x\xFF"},
             // Of two the first is the one that programs find.
             Row{"/b/claude",
                 "/h",
                 {"PATH=/1", "PATH=/2"},
                 "PATH=/b:/usr/local/bin:/opt/homebrew/bin:/h/.local/bin:/1"},
         }) {
        EXPECT_THAT(PromptRunner::environment(row.binary, row.home, row.inherited),
                    ElementsAre(row.path));
    }
}

TEST(PromptEnvironment, KeepsEverythingElseAsItIs) {
    EXPECT_THAT(PromptRunner::environment("/b/claude", "/h",
                                          {"PATHS=1", "path=2", "MANPATH=3", "", "X", "Y=\xFF=\n"}),
                ElementsAre("PATHS=1", "path=2", "MANPATH=3", "", "X", "Y=\xFF=\n",
                            "PATH=/b:/usr/local/bin:/opt/homebrew/bin:/h/.local/bin:"
                            "/usr/bin:/bin"));
}

} // namespace
} // namespace sallowmere
