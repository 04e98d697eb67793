// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/AppStateTest.h"

#include "Support/Texts.h"

namespace sallowmere {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const QString openInTerminal =
    QStringLiteral("Session is active in the terminal \u2014 prompt it there");

class Prompt : public AppStateTest {
protected:
    bool isUnderWay(const QString& id) const { return state->promptingSessions().contains(id); }

    std::optional<std::string> errorOf(const QString& id) const {
        const auto error = state->promptErrors().find(id);
        return error == state->promptErrors().end() ? std::nullopt : std::optional(utf8(*error));
    }
};

TEST_F(Prompt, IsSentTrimmedWithItsSessionAndTheSettings) {
    settings.resumePermissionMode = QStringLiteral("plan");
    restart();
    state->sendPrompt(QStringLiteral(" \t\r\n\u00A0\u2003Go on,\n then.\u2029\u0085\v\f "),
                      in("/w", session("a")));
    ASSERT_THAT(sent, SizeIs(1));
    EXPECT_EQ(utf8(sent[0].prompt), "Go on,\n then.");
    EXPECT_EQ(sent[0].session, in("/w", session("a")));
    EXPECT_EQ(sent[0].settings, settings);
    EXPECT_TRUE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

TEST_F(Prompt, OfBlanksAndLineBreaksDoesNothing) {
    for (const char* blank : {"", " ", "\n", " \t\r\n ", "\u00A0\u2028"}) {
        state->sendPrompt(QString::fromUtf8(blank), session("a"));
        state->sendPrompt(QString::fromUtf8(blank), running(session("a")));
    }
    EXPECT_THAT(sent, IsEmpty());
    EXPECT_FALSE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

TEST_F(Prompt, WaitsForNoOtherButThatOfItsSession) {
    state->sendPrompt("one", session("a"));
    state->sendPrompt("two", session("a"));
    // Not even to complain.
    state->sendPrompt("three", running(session("a")));
    EXPECT_EQ(errorOf("a"), std::nullopt);
    EXPECT_THAT(sent, SizeIs(1));
    state->sendPrompt("four", session("b"));
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_EQ(utf8(sent[1].prompt), "four");
    EXPECT_EQ(state->promptingSessions(), (QSet<QString>{"a", "b"}));
}

TEST_F(Prompt, IsOnePerIdAndNotPerSessionId) {
    SessionInfo sibling = session("b");
    sibling.sessionId = session("a").sessionId;
    state->sendPrompt("one", session("a"));
    state->sendPrompt("two", sibling);
    EXPECT_THAT(sent, SizeIs(2));
}

TEST_F(Prompt, IsRefusedWhileTheSessionIsOpenInATerminal) {
    state->sendPrompt("Go", running(session("a")));
    EXPECT_THAT(sent, IsEmpty());
    EXPECT_FALSE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), utf8(openInTerminal));
}

TEST_F(Prompt, KeepsARefusalUntilTheNextOneStarts) {
    state->sendPrompt("Go", running(session("a")));
    scan({session("a")});
    state->sendPrompt(" ", session("a"));
    state->sendPrompt("Go", session("b"));
    EXPECT_EQ(errorOf("a"), utf8(openInTerminal));
    state->sendPrompt("Go", session("a"));
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

TEST_F(Prompt, ThatSucceedsLeavesNothingBehind) {
    state->sendPrompt("Go", session("a"));
    sent.at(0).completion(std::nullopt);
    EXPECT_FALSE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

TEST_F(Prompt, ThatFailsLeavesItsMessage) {
    state->sendPrompt("Go", session("a"));
    sent.at(0).completion(QStringLiteral("claude exited with status 2"));
    EXPECT_FALSE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), "claude exited with status 2");
    EXPECT_EQ(errorOf("the a"), std::nullopt);
}

TEST_F(Prompt, MayFollowOneThatHasEnded) {
    state->sendPrompt("one", session("a"));
    sent.at(0).completion(QStringLiteral("No luck"));
    state->sendPrompt("two", session("a"));
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_TRUE(isUnderWay("a"));
    EXPECT_EQ(errorOf("a"), std::nullopt);
    sent.at(1).completion(std::nullopt);
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

TEST_F(Prompt, EndsForItselfAlone) {
    state->sendPrompt("one", session("a"));
    state->sendPrompt("two", session("b"));
    sent.at(1).completion(QStringLiteral("No luck"));
    EXPECT_TRUE(isUnderWay("a"));
    EXPECT_FALSE(isUnderWay("b"));
    sent.at(0).completion(std::nullopt);
    EXPECT_EQ(errorOf("a"), std::nullopt);
    EXPECT_EQ(errorOf("b"), "No luck");
}

TEST_F(Prompt, ThatCannotStartIsOverAtOnce) {
    AppState failing(settings, {queue.clock(), queue, files, home, applications, keystrokes,
                                [](const std::string&) {}, player,
                                [](const QString&, const SessionInfo&, const Settings&,
                                   const PromptRunner::Completion& completion) {
                                    completion(QStringLiteral("claude binary not found"));
                                }});
    failing.sendPrompt("Go", session("a"));
    EXPECT_TRUE(failing.promptingSessions().isEmpty());
    EXPECT_EQ(failing.promptErrors(), (AppState::PromptErrors{{"a", "claude binary not found"}}));
}

TEST_F(Prompt, MayBeSentToTheModelsOwnSession) {
    scan({session("a")});
    state->sendPrompt("Go", state->sessions().front());
    scan({});
    sent.at(0).completion(QStringLiteral("No luck"));
    EXPECT_EQ(errorOf("a"), "No luck");
}

TEST_F(Prompt, GoesOnThoughItsSessionIsNoLongerListed) {
    scan({session("a")});
    state->sendPrompt("Go", session("a"));
    scan({});
    EXPECT_TRUE(isUnderWay("a"));
}

TEST_F(Prompt, MayEndWhenTheModelIsGone) {
    state->sendPrompt("Go", session("a"));
    state.reset();
    sent.at(0).completion(QStringLiteral("No luck"));
    restart();
    EXPECT_EQ(errorOf("a"), std::nullopt);
}

} // namespace
} // namespace sallowmere
