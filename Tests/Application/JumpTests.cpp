// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/AppStateTest.h"

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What one of the user's actions does to the desktop. The session's terminal, when it has one, is
/// process 7.
class Jump : public AppStateTest {
protected:
    Jump() {
        settings.terminalBundleIds = {"first", "second", "third"};
        restart();
    }

    void openTerminal() { applications.running[7] = {}; }

    const SessionInfo inTerminal = in("/w", running(session("a"), 7));
};

TEST_F(Jump, GoesToTheTerminalOfTheSession) {
    openTerminal();
    applications.identifiers = {{"first", 70}};
    state->jump(inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(Jump, RaisesTheWindowOfTheSession) {
    applications.running[7] = {{70, "other"}, {71, "W - kitty"}};
    state->jump(inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 7", "raise 71"));
}

TEST_F(Jump, FallsBackOnTheFirstNamedTerminalThatRuns) {
    applications.identifiers = {{"second", 80}, {"third", 90}};
    state->jump(inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 80"));
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(Jump, TakesTheNamedTerminalsInTheOrderOfTheSettings) {
    applications.identifiers = {{"first", 90}, {"second", 80}};
    state->jump(inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 90"));
}

TEST_F(Jump, FallsBackOnTheSessionsDirectory) {
    state->jump(inTerminal);
    EXPECT_THAT(applications.done, IsEmpty());
    EXPECT_THAT(openedFolders, ElementsAre("/w"));
}

TEST_F(Jump, DoesNothingWithoutADirectory) {
    state->jump(running(session("a"), 7));
    EXPECT_THAT(applications.done, IsEmpty());
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(Jump, FallsBackWithoutAProcessOrATerminal) {
    openTerminal();
    for (const SessionInfo& elsewhere : {in("/w", session("a")), in("/w", running(session("a")))}) {
        applications.done.clear();
        applications.identifiers = {{"third", 90}};
        state->jump(elsewhere);
        EXPECT_THAT(applications.done, ElementsAre("activate 90"));
    }
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(Jump, OpensADirectoryInUtf8) {
    state->jump(in(QStringLiteral("/w/Gärtnerei 🌊"), session("a")));
    EXPECT_THAT(openedFolders, ElementsAre("/w/G\xC3\xA4rtnerei \xF0\x9F\x8C\x8A"));
}

TEST_F(Jump, AcknowledgesTheCompletionWhateverComesOfIt) {
    for (const bool terminal : {true, false}) {
        scan({session("a")});
        scan({session("a", SessionStatus::done)});
        EXPECT_FALSE(state->recentCompletions().isEmpty());
        if (terminal) {
            openTerminal();
        } else {
            applications.running.clear();
        }
        state->jump(inTerminal);
        EXPECT_TRUE(state->recentCompletions().isEmpty());
    }
}

using Answer = Jump;

TEST_F(Answer, IsTypedIntoTheTerminalAfterAMoment) {
    openTerminal();
    state->answer(2, inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    queue.advance(0.375);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    queue.advance(0.05);
    EXPECT_THAT(keystrokes.typed, ElementsAre(2));
    EXPECT_EQ(keystrokes.trustRequests, 0);
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(Answer, IsNoJump) {
    applications.running[7] = {{70, "W - kitty"}};
    scan({session("a")});
    scan({session("a", SessionStatus::done)});
    state->answer(2, inTerminal);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    EXPECT_FALSE(state->recentCompletions().isEmpty());
}

TEST_F(Answer, IsLeftToTheUserWhenKeystrokesAreSwitchedOff) {
    settings.keystrokeAnswers = false;
    restart();
    openTerminal();
    keystrokes.trusted = false;
    state->answer(2, inTerminal);
    queue.advance(10);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    EXPECT_EQ(keystrokes.trustRequests, 0);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(Answer, IsLeftToTheUserWithoutAProcessOrATerminal) {
    keystrokes.trusted = false;
    for (const SessionInfo& elsewhere : {in("/w", session("a")), in("/w", running(session("a")))}) {
        openedFolders.clear();
        state->answer(2, elsewhere);
        queue.advance(10);
        EXPECT_EQ(keystrokes.trustRequests, 0);
        EXPECT_THAT(openedFolders, ElementsAre("/w"));
    }
    EXPECT_THAT(keystrokes.typed, IsEmpty());
}

TEST_F(Answer, AsksForTrustAndJumps) {
    openTerminal();
    keystrokes.trusted = false;
    state->answer(2, inTerminal);
    EXPECT_EQ(keystrokes.trustRequests, 1);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    keystrokes.trusted = true;
    queue.advance(10);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
}

TEST_F(Answer, JumpsWhenTheTerminalIsGone) {
    state->answer(2, inTerminal);
    queue.advance(10);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    EXPECT_THAT(openedFolders, ElementsAre("/w"));
}

TEST_F(Answer, JumpsWhenNoKeyHasThatNumber) {
    openTerminal();
    state->answer(10, inTerminal);
    queue.advance(10);
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(Answer, IsTypedThoughTheModelIsGone) {
    openTerminal();
    state->answer(2, inTerminal);
    state.reset();
    queue.advance(1);
    EXPECT_THAT(keystrokes.typed, ElementsAre(2));
}

class PermissionAnswer : public Jump {
protected:
    PermissionAnswer() { openTerminal(); }

    std::string pathOf(const std::string& name) const {
        return home + "/.config/sallowmere/notifications/" + name;
    }

    void addFile(const std::string& name) { files.addFile(pathOf(name), "{}"); }

    bool exists(const std::string& name) const {
        return files.status(pathOf(name), Links::keep).has_value();
    }

    void answer(const PermissionRequest& asked, int optionNumber) {
        state->respondToPermission(asked, optionNumber);
        queue.advance(1);
    }
};

TEST_F(PermissionAnswer, RemovesTheRequestAndItsFileAndIsTyped) {
    addFile("p.json");
    addFile("q.json");
    scan({inTerminal}, {request("p.json", "the a"), request("q.json", "the a")});
    answer(request("p.json", "the a"), 3);
    EXPECT_FALSE(exists("p.json"));
    EXPECT_TRUE(exists("q.json"));
    EXPECT_THAT(state->permissionRequests(), ElementsAre(request("q.json", "the a")));
    EXPECT_THAT(keystrokes.typed, ElementsAre(3));
}

TEST_F(PermissionAnswer, GoesToTheSessionWithThatSessionId) {
    SessionInfo decoy = in("/decoy", running(session("the a"), 8));
    decoy.sessionId = QStringLiteral("something else");
    applications.running[8] = {};
    scan({decoy, inTerminal}, {request("p.json", "the a")});
    answer(request("p.json", "the a"), 1);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(PermissionAnswer, GoesToTheFirstOfSeveralSessions) {
    SessionInfo second = in("/other", running(session("b"), 8));
    second.sessionId = inTerminal.sessionId;
    applications.running[8] = {};
    scan({inTerminal, second}, {request("p.json", "the a")});
    answer(request("p.json", "the a"), 1);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
}

TEST_F(PermissionAnswer, OfAnUnknownSessionOnlyRemovesTheRequest) {
    addFile("p.json");
    scan({inTerminal}, {request("p.json", "another")});
    answer(request("p.json", "another"), 1);
    EXPECT_FALSE(exists("p.json"));
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
    EXPECT_THAT(applications.done, IsEmpty());
    EXPECT_THAT(keystrokes.typed, IsEmpty());
    EXPECT_THAT(openedFolders, IsEmpty());
}

TEST_F(PermissionAnswer, RemovesEveryRequestWithThatId) {
    PermissionRequest older = request("p.json", "another");
    older.receivedAt = start;
    scan({}, {request("p.json", "the a"), request("q.json", "the a"), older});
    answer(request("p.json", "the a"), 1);
    EXPECT_THAT(state->permissionRequests(), ElementsAre(request("q.json", "the a")));
}

TEST_F(PermissionAnswer, WorksWithoutAFileOrAListedRequest) {
    scan({inTerminal});
    answer(request("p.json", "the a"), 1);
    EXPECT_THAT(keystrokes.typed, ElementsAre(1));
}

TEST_F(PermissionAnswer, MayBeToldOfTheModelsOwnRequest) {
    scan({inTerminal}, {request("p.json", "the a"), request("q.json", "another")});
    answer(state->permissionRequests().front(), 2);
    EXPECT_THAT(keystrokes.typed, ElementsAre(2));
    answer(state->permissionRequests().front(), 1);
    EXPECT_THAT(keystrokes.typed, ElementsAre(2));
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
}

TEST_F(PermissionAnswer, FallsBackAsAnyAnswerDoes) {
    applications.running.clear();
    scan({inTerminal}, {request("p.json", "the a")});
    answer(request("p.json", "the a"), 1);
    EXPECT_THAT(openedFolders, ElementsAre("/w"));
}

} // namespace
} // namespace sallowmere
