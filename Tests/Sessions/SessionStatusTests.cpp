// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionScanner.h"

#include "Support/Texts.h"
#include "Support/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using testing::Optional;

const Timestamp now = at("2026-11-20T12:00:00Z");
const std::string key = "/home/user/.claude/projects/-home-user-code-lamp/6f1c.jsonl";

/// The session of a transcript last written so many seconds ago.
SessionInfo made(const ParsedTail& tail, double age = 10) {
    const Timestamp modified = advancedBy(now, -age);
    return SessionScanner::make(key, tail, now, modified, modified);
}

ParsedTail withAsk(bool answered = false) {
    ParsedTail tail;
    tail.ask = AskQuestion{QStringLiteral("Which?"), {QStringLiteral("One")}};
    tail.askAnswered = answered;
    return tail;
}

ParsedTail withPlan(bool answered = false) {
    ParsedTail tail;
    tail.plan = QStringLiteral("Do it");
    tail.planAnswered = answered;
    return tail;
}

ParsedTail withTurnEnd(std::string_view stop, std::string_view activity = "") {
    ParsedTail tail;
    tail.lastStopAt = at(stop);
    if (!activity.empty()) {
        tail.lastActivityEntryAt = at(activity);
    }
    return tail;
}

ParsedTail withEvents(const std::vector<QString>& labels) {
    ParsedTail tail;
    for (const QString& label : labels) {
        tail.events.push_back({{}, LogEvent::Kind::tool, label, std::nullopt, std::nullopt});
    }
    return tail;
}

TEST(SessionStatus, FollowsFromWhatIsPendingTheTurnAndTheAge) {
    using enum SessionStatus;
    const ParsedTail nothing;
    const ParsedTail ended = withTurnEnd("2026-11-20T11:49:00Z", "2026-11-20T11:48:00Z");
    const ParsedTail goneOn = withTurnEnd("2026-11-20T11:48:00Z", "2026-11-20T11:49:00Z");
    const ParsedTail endedAtOnce = withTurnEnd("2026-11-20T11:48:00Z", "2026-11-20T11:48:00Z");
    ParsedTail askedThenEnded = ended;
    askedThenEnded.ask = withAsk().ask;
    ParsedTail askAnsweredPlanPending = withPlan();
    askAnsweredPlanPending.ask = withAsk().ask;
    askAnsweredPlanPending.askAnswered = true;
    struct Row {
        const char* what;
        ParsedTail tail;
        double age;
        SessionStatus status;
    };
    for (const Row& row : {
             Row{"nothing known, just written", nothing, 0, working},
             Row{"nothing known, 60 s", nothing, 60, working},
             Row{"nothing known, under 90 s", nothing, 89.999, working},
             Row{"nothing known, 90 s", nothing, 90, done},
             Row{"nothing known, 10 min", nothing, 600, done},
             Row{"nothing known, under 30 min", nothing, 1799.999, done},
             Row{"nothing known, 30 min", nothing, 1800, idle},
             Row{"nothing known, a day", nothing, 86'400, idle},
             Row{"written in the future", nothing, -3'600, working},
             Row{"turn ended", ended, 0, done},
             Row{"turn ended, 10 min", ended, 600, done},
             Row{"turn ended, under 30 min", ended, 1799.999, done},
             Row{"turn ended, 30 min", ended, 1800, idle},
             Row{"turn ended in the future", ended, -3'600, done},
             Row{"turn ended as the activity did", endedAtOnce, 10, done},
             Row{"turn ended, no activity known", withTurnEnd("2026-11-20T11:48:00Z"), 10, done},
             Row{"turn went on", goneOn, 10, working},
             Row{"turn went on, 90 s", goneOn, 90, done},
             Row{"question", withAsk(), 0, waiting},
             Row{"question, 10 min", withAsk(), 600, waiting},
             Row{"question, under 30 min", withAsk(), 1799.999, waiting},
             Row{"question, 30 min", withAsk(), 1800, idle},
             Row{"question in the future", withAsk(), -3'600, waiting},
             Row{"question and turn ended", askedThenEnded, 10, waiting},
             Row{"answered question", withAsk(true), 60, working},
             Row{"answered question, 10 min", withAsk(true), 600, done},
             Row{"plan", withPlan(), 600, waiting},
             Row{"plan, 2 hours", withPlan(), 7'200, idle},
             Row{"answered plan", withPlan(true), 60, working},
             Row{"answered question, plan", askAnsweredPlanPending, 600, waiting},
         }) {
        EXPECT_EQ(made(row.tail, row.age).status, row.status) << row.what;
    }
}

TEST(SessionActivity, OfAWaitingSessionSaysWhatItWaitsFor) {
    EXPECT_THAT(utf8(made(withAsk()).activity), Optional(std::string("Asks: Which?")));
    EXPECT_THAT(utf8(made(withAsk(), 600).activity), Optional(std::string("Asks: Which?")));
    EXPECT_THAT(utf8(made(withPlan()).activity), Optional(std::string("Plan ready for review")));
}

TEST(SessionActivity, NamesTheQuestionEvenWhenOnlyAPlanWaits) {
    ParsedTail tail = withPlan();
    tail.ask = withAsk().ask;
    tail.askAnswered = true;
    EXPECT_THAT(utf8(made(tail).activity), Optional(std::string("Asks: Which?")));
}

TEST(SessionActivity, OfAWorkingSessionIsItsNewestEvent) {
    EXPECT_THAT(
        utf8(
            made(withEvents({QStringLiteral("Bash(ls)"), QStringLiteral("Read(a.txt)")})).activity),
        Optional(std::string("Reading a.txt")));
    EXPECT_THAT(utf8(made(withEvents({QStringLiteral("Bash")})).activity),
                Optional(std::string("Bash")));
    EXPECT_EQ(made(ParsedTail()).activity, std::nullopt);
}

TEST(SessionActivity, OfADoneSessionInvitesToJumpAndAnIdleOneSaysNothing) {
    const ParsedTail tail = withEvents({QStringLiteral("Bash(ls)")});
    EXPECT_THAT(utf8(made(tail, 600).activity), Optional(std::string("Done — click to jump")));
    EXPECT_EQ(made(tail, 3'600).activity, std::nullopt);
    EXPECT_EQ(made(withAsk(), 3'600).activity, std::nullopt);
}

TEST(Session, CarriesAQuestionAndAPlanOnlyWhileTheyWait) {
    EXPECT_EQ(made(withAsk()).ask, withAsk().ask);
    EXPECT_EQ(made(withPlan()).plan, withPlan().plan);
    EXPECT_FALSE(made(withAsk(true)).ask);
    EXPECT_FALSE(made(withPlan(true)).plan);
    EXPECT_FALSE(made(withAsk(), 7'200).ask);
    const SessionInfo idle = made(withPlan(), 7'200);
    EXPECT_EQ(idle.status, SessionStatus::idle);
    EXPECT_FALSE(idle.ask);
    EXPECT_FALSE(idle.plan);
}

TEST(Session, CarriesOnlyThatOfTheTwoWhichWaits) {
    ParsedTail tail = withPlan();
    tail.ask = withAsk().ask;
    tail.askAnswered = true;
    EXPECT_FALSE(made(tail).ask);
    EXPECT_TRUE(made(tail).plan);
    tail.askAnswered = false;
    EXPECT_TRUE(made(tail).ask);
    EXPECT_TRUE(made(tail).plan);
    tail.planAnswered = true;
    EXPECT_TRUE(made(tail).ask);
    EXPECT_FALSE(made(tail).plan);
}

TEST(Session, CopiesWhatTheTailAndTheFileTell) {
    ParsedTail tail = withEvents({QStringLiteral("Bash(ls)")});
    tail.sessionId = QStringLiteral("6f1c");
    tail.cwd = QStringLiteral("/home/user/code/desk lamp/");
    tail.lastPrompt = QStringLiteral("Why?");
    tail.model = QStringLiteral("claude-opus-4-1");
    tail.todo = TodoProgress{1, 3};
    const Timestamp created = at("2026-11-20T09:00:00Z");
    const Timestamp modified = at("2026-11-20T11:59:00Z");
    const SessionInfo session = SessionScanner::make(key, tail, now, modified, created);
    EXPECT_EQ(utf8(session.id), key);
    EXPECT_EQ(utf8(session.sessionId), "6f1c");
    EXPECT_EQ(session.cwd, tail.cwd);
    EXPECT_EQ(utf8(session.projectName), "desk lamp");
    EXPECT_EQ(session.lastPrompt, tail.lastPrompt);
    EXPECT_EQ(utf8(session.modelBadge), "Opus");
    EXPECT_EQ(session.startedAt, created);
    EXPECT_EQ(session.lastActivityAt, modified);
    EXPECT_EQ(session.events, tail.events);
    EXPECT_EQ(session.todo, tail.todo);
    EXPECT_FALSE(session.process);
}

TEST(Session, WithoutIdentifierIsCalledAsItsFile) {
    EXPECT_EQ(utf8(made(ParsedTail()).sessionId), "6f1c.jsonl");
    EXPECT_EQ(utf8(made(ParsedTail()).id), key);
    ParsedTail tail;
    tail.sessionId = QString();
    EXPECT_EQ(utf8(made(tail).sessionId), "");
}

TEST(Session, IsTitledByTitlePromptOrProject) {
    ParsedTail tail;
    EXPECT_EQ(utf8(made(tail).title), "lamp");
    tail.cwd = QStringLiteral("/home/user/desk");
    EXPECT_EQ(utf8(made(tail).title), "desk");
    tail.lastPrompt = QString(48, u'x');
    EXPECT_EQ(utf8(made(tail).title), std::string(48, 'x'));
    // Cut without an ellipsis, between characters.
    tail.lastPrompt = QString(100, u'x');
    EXPECT_EQ(utf8(made(tail).title), std::string(48, 'x'));
    tail.lastPrompt = QString(47, u'x') + QStringLiteral("👩‍👧yz");
    EXPECT_EQ(utf8(made(tail).title), std::string(47, 'x') + "👩‍👧");
    tail.title = QString(100, u't');
    EXPECT_EQ(utf8(made(tail).title), std::string(100, 't'));
}

TEST(Session, NamesItsProjectAfterItsDirectory) {
    struct Row {
        QString cwd;
        std::string name;
    };
    for (const Row& row : {
             Row{QStringLiteral("/home/user/code/my-lamp"), "my-lamp"},
             Row{QStringLiteral("/home/user/code/lamp/"), "lamp"},
             Row{QStringLiteral("/home/user/code/lamp//"), "lamp"},
             Row{QStringLiteral("/"), "/"},
             Row{QStringLiteral("//"), "/"},
             Row{QString(), ""},
         }) {
        ParsedTail tail;
        tail.cwd = row.cwd;
        EXPECT_EQ(utf8(made(tail).projectName), row.name) << utf8(row.cwd);
    }
}

TEST(ProjectName, IsWhatFollowsTheLastDashOfTheFolder) {
    struct Row {
        const char* path;
        std::string name;
    };
    for (const Row& row : {
             Row{"/p/-home-user-code-lamp/a.jsonl", "lamp"},
             Row{"/p/-home-user-my-lamp/a.jsonl", "lamp"},
             Row{"/p/lamp/a-b.jsonl", "lamp"},
             Row{"/p/-home-user--/a.jsonl", "user"},
             Row{"/p/-/a.jsonl", "-"},
             Row{"/p/---/a.jsonl", "---"},
             Row{"/p/-home-l\xC3\xA4mpchen/a.jsonl", "lämpchen"},
             Row{"/p/-home-\xC3/a.jsonl", "\xEF\xBF\xBD"},
         }) {
        EXPECT_EQ(utf8(SessionScanner::projectName(row.path)), row.name) << row.path;
    }
}

TEST(ModelBadge, NamesTheFamily) {
    struct Row {
        std::optional<QString> model;
        std::string badge;
    };
    for (const Row& row : {
             Row{std::nullopt, "Claude"},
             Row{QString(), "Claude"},
             Row{QStringLiteral("gpt"), "Claude"},
             Row{QStringLiteral("claude-fable-1"), "Fable"},
             Row{QStringLiteral("claude-mythos-1"), "Fable"},
             Row{QStringLiteral("claude-opus-4-1"), "Opus"},
             Row{QStringLiteral("us.anthropic.claude-OPUS-4"), "Opus"},
             Row{QStringLiteral("claude-sonnet-4-5"), "Sonnet"},
             Row{QStringLiteral("claude-haiku-4-5"), "Haiku"},
             // The order of the test decides, not that of the words.
             Row{QStringLiteral("haiku-sonnet-opus-mythos"), "Fable"},
             Row{QStringLiteral("haiku-sonnet-opus"), "Opus"},
             Row{QStringLiteral("haiku-sonnet"), "Sonnet"},
             Row{QStringLiteral("opus-fable"), "Fable"},
         }) {
        EXPECT_EQ(utf8(SessionScanner::modelBadge(row.model)), row.badge);
    }
}

} // namespace
} // namespace sallowmere
