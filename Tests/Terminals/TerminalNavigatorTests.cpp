// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Terminals/TerminalNavigator.h"

#include "Support/FakeDesktop.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t terminal = 7;

SessionInfo sessionIn(const std::optional<QString>& cwd) {
    SessionInfo session;
    session.cwd = cwd;
    session.process.emplace();
    session.process->pid = 100;
    session.process->terminalName = QStringLiteral("Terminal");
    session.process->terminalPid = terminal;
    return session;
}

class TerminalNavigatorTest : public testing::Test {
protected:
    bool jump(const SessionInfo& session) {
        return TerminalNavigator::jump(session, applications, keystrokes);
    }

    /// The windows raised for a session there, when the terminal has these titles from front to
    /// back; the windows are numbered from 1.
    std::vector<std::string> raised(const QString& cwd,
                                    const std::vector<std::optional<std::string>>& titles) {
        std::vector<ApplicationWindow>& windows = applications.running[terminal];
        windows.clear();
        for (const std::optional<std::string>& title : titles) {
            windows.push_back({windows.size() + 1, title});
        }
        applications.done.clear();
        EXPECT_TRUE(jump(sessionIn(cwd)));
        EXPECT_FALSE(applications.done.empty());
        EXPECT_EQ(applications.done.front(), "activate 7");
        applications.done.erase(applications.done.begin());
        return applications.done;
    }

    FakeApplications applications;
    FakeKeystrokes keystrokes;
};

TEST_F(TerminalNavigatorTest, ActivatesNothingWithoutAProcess) {
    applications.running[terminal] = {{1, "MyApp"}};
    SessionInfo session = sessionIn("/Users/u/Projects/MyApp");
    session.process.reset();
    EXPECT_FALSE(jump(session));
    EXPECT_THAT(applications.done, IsEmpty());
}

TEST_F(TerminalNavigatorTest, ActivatesNothingForAProcessOutsideATerminal) {
    applications.running[terminal] = {{1, "MyApp"}};
    applications.running[100] = {{2, "MyApp"}};
    applications.running[0] = {{3, "MyApp"}};
    SessionInfo session = sessionIn("/Users/u/Projects/MyApp");
    session.process->terminalPid.reset();
    EXPECT_FALSE(jump(session));
    EXPECT_THAT(applications.done, IsEmpty());
}

TEST_F(TerminalNavigatorTest, ActivatesNothingWhenTheTerminalHasGone) {
    applications.running[100] = {{2, "MyApp"}};
    EXPECT_FALSE(jump(sessionIn("/Users/u/Projects/MyApp")));
    EXPECT_THAT(applications.done, IsEmpty());
}

TEST_F(TerminalNavigatorTest, ActivatesBeforeItRaises) {
    applications.running[terminal] = {{1, "other"}, {2, "MyApp"}};
    EXPECT_TRUE(jump(sessionIn("/Users/u/Projects/MyApp")));
    EXPECT_THAT(applications.done, ElementsAre("activate 7", "raise 2"));
    EXPECT_EQ(keystrokes.trustRequests, 0);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
}

TEST_F(TerminalNavigatorTest, WorksOnTheApplicationThatTheTerminalBelongsTo) {
    applications.running[9] = {{90, "other"}, {91, "MyApp"}};
    applications.helpers[terminal] = 9;
    EXPECT_TRUE(jump(sessionIn("/Users/u/Projects/MyApp")));
    EXPECT_THAT(applications.done, ElementsAre("activate 9", "raise 91"));
}

TEST_F(TerminalNavigatorTest, OnlyActivatesWithoutAWorkingDirectory) {
    applications.running[terminal] = {{1, "/"}, {2, "MyApp"}};
    EXPECT_TRUE(jump(sessionIn(std::nullopt)));
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(TerminalNavigatorTest, OnlyActivatesWithoutTheRightToArrangeWindowsAndDoesNotAskForIt) {
    keystrokes.trusted = false;
    applications.running[terminal] = {{1, "MyApp"}};
    EXPECT_TRUE(jump(sessionIn("/Users/u/Projects/MyApp")));
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    EXPECT_EQ(keystrokes.trustRequests, 0);
}

TEST_F(TerminalNavigatorTest, RaisesTheWindowWhoseTitleHoldsTheFoldersName) {
    const QString cwd = "/Users/u/Projects/MyApp";
    EXPECT_THAT(raised(cwd, {"zsh", "MyApp"}), ElementsAre("raise 2"));
    EXPECT_THAT(raised(cwd, {"zsh", "u@host: ~/Projects/MyApp (main)"}), ElementsAre("raise 2"));
    EXPECT_THAT(raised(cwd, {"Projects", "MyAp p", "MyApp2"}), ElementsAre("raise 3"));
}

TEST_F(TerminalNavigatorTest, RaisesTheWindowWhoseTitleHoldsTheWholePath) {
    EXPECT_THAT(raised("/Users/u/Projects/MyApp", {"zsh", "vim /Users/u/Projects/MyApp/a.c"}),
                ElementsAre("raise 2"));
}

TEST_F(TerminalNavigatorTest, TakesTheFolderFromAPathThatEndsInASlash) {
    EXPECT_THAT(raised("/Users/u/Projects/MyApp/", {"Projects", "myapp"}), ElementsAre("raise 2"));
}

TEST_F(TerminalNavigatorTest, ComparesWithoutRegardToCase) {
    EXPECT_THAT(raised("/Users/u/Projects/MyApp", {"myapp — zsh"}), ElementsAre("raise 1"));
    EXPECT_THAT(raised("/users/u/projects/myapp", {"/USERS/U/PROJECTS/MYAPP"}),
                ElementsAre("raise 1"));
    EXPECT_THAT(raised("/home/u/ÜBUNG", {"übung"}), ElementsAre("raise 1"));
    EXPECT_THAT(raised("/home/u/übung", {"~/ÜBUNG"}), ElementsAre("raise 1"));
}

TEST_F(TerminalNavigatorTest, RaisesOnlyTheFirstOfTwoThatMatch) {
    const QString cwd = "/Users/u/Projects/MyApp";
    EXPECT_THAT(raised(cwd, {"zsh", "myapp — zsh", "/Users/u/Projects/MyApp"}),
                ElementsAre("raise 2"));
    EXPECT_THAT(raised(cwd, {"/Users/u/Projects/MyApp", "myapp — zsh"}), ElementsAre("raise 1"));
}

TEST_F(TerminalNavigatorTest, PassesOverWindowsWithoutATitle) {
    EXPECT_THAT(raised("/Users/u/Projects/MyApp", {std::nullopt, "", "MyApp"}),
                ElementsAre("raise 3"));
    EXPECT_THAT(raised("", {std::nullopt}), IsEmpty());
}

TEST_F(TerminalNavigatorTest, RaisesNothingWhenNoTitleMatches) {
    const QString cwd = "/Users/u/Projects/MyApp";
    EXPECT_THAT(raised(cwd, {"zsh", "My App", "/Users/u/Projects", "\xffMyAp"}), IsEmpty());
    EXPECT_THAT(raised(cwd, {}), IsEmpty());
}

TEST_F(TerminalNavigatorTest, ReadsTitlesThatAreNotUtf8AsFarAsTheyGo) {
    EXPECT_THAT(raised("/Users/u/Projects/MyApp", {"\xff\xfe MyApp \xc3"}), ElementsAre("raise 1"));
}

} // namespace
} // namespace sallowmere
