// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelContent.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const Timestamp now = at("2025-06-02T12:00:00Z");

SessionInfo session(const QString& id, SessionStatus status, std::chrono::seconds age) {
    SessionInfo info;
    info.id = id;
    info.sessionId = QStringLiteral("the id of ") + id;
    info.status = status;
    info.lastActivityAt = now - age;
    return info;
}

template <typename Record>
std::vector<QString> ids(const std::vector<Record>& records) {
    std::vector<QString> result;
    std::transform(records.begin(), records.end(), std::back_inserter(result),
                   [](const Record& record) { return record.id; });
    return result;
}

PermissionRequest request(const QString& id) {
    return {id, QStringLiteral("someone"), QStringLiteral("May I?"), now};
}

TEST(PanelContent, CountsWhatWorksAndWhatWaits) {
    const std::vector<SessionInfo> sessions{
        session("a", SessionStatus::working, 1s), session("b", SessionStatus::waiting, 1s),
        session("c", SessionStatus::working, 1s), session("d", SessionStatus::done, 1s),
        session("e", SessionStatus::idle, 1s),
    };
    EXPECT_EQ(PanelContent::workingCount(sessions), 2U);
    EXPECT_EQ(PanelContent::waitingCount(sessions, {}), 1U);
    EXPECT_EQ(PanelContent::waitingCount(sessions, {request("1"), request("2")}), 3U);
    EXPECT_EQ(PanelContent::waitingCount({}, {request("1")}), 1U);
}

TEST(PanelContent, ListsWaitingSessionsFirstAndThenTheLatest) {
    EXPECT_THAT(ids(PanelContent::orderedSessions({
                    session("working", SessionStatus::working, 1s),
                    session("waiting long", SessionStatus::waiting, 20min),
                    session("done", SessionStatus::done, 2s),
                    session("idle", SessionStatus::idle, 0s),
                    session("waiting", SessionStatus::waiting, 1min),
                })),
                ElementsAre("waiting", "waiting long", "idle", "working", "done"));
    EXPECT_THAT(PanelContent::orderedSessions({}), IsEmpty());
}

TEST(PanelContent, KeepsTheOrderOfSessionsOfTheSameTime) {
    EXPECT_THAT(ids(PanelContent::orderedSessions({
                    session("b", SessionStatus::done, 1s),
                    session("a", SessionStatus::working, 1s),
                    session("c", SessionStatus::idle, 1s),
                })),
                ElementsAre("b", "a", "c"));
}

TEST(PanelContent, ListsTheLatestCompletionFirst) {
    const AppState::Completions completions{
        {QStringLiteral("the id of a"), now - 10s},
        {QStringLiteral("the id of c"), now - 5s},
        {QStringLiteral("c"), now},
        {QStringLiteral("gone"), now},
    };
    EXPECT_THAT(ids(PanelContent::completedSessions({session("a", SessionStatus::done, 1s),
                                                     session("b", SessionStatus::done, 1s),
                                                     session("c", SessionStatus::working, 1s)},
                                                    completions)),
                ElementsAre("c", "a"));
}

TEST(PanelContent, HasCardsForTheFirstRequests) {
    EXPECT_THAT(PanelContent::approvals({}), IsEmpty());
    EXPECT_THAT(
        ids(PanelContent::approvals({request("d"), request("b"), request("a"), request("c")})),
        ElementsAre("d", "b", "a"));
}

TEST(PanelContent, HasOneCardForQuestionsAndOneForPlans) {
    std::vector<SessionInfo> sessions{
        session("a", SessionStatus::waiting, 1s),
        session("b", SessionStatus::waiting, 2s),
        session("c", SessionStatus::waiting, 3s),
    };
    EXPECT_FALSE(PanelContent::asking(sessions));
    EXPECT_FALSE(PanelContent::planning(sessions));
    sessions[1].ask = AskQuestion{};
    sessions[2].ask = AskQuestion{};
    sessions[2].plan = QStringLiteral("# Plan");
    EXPECT_EQ(PanelContent::asking(sessions).value().id, "b");
    EXPECT_EQ(PanelContent::planning(sessions).value().id, "c");
}

TEST(PanelContent, SaysHowAnOptionAnswers) {
    EXPECT_EQ(PanelContent::askHint(true), "Click an option to answer in the terminal");
    EXPECT_EQ(PanelContent::askHint(false),
              "Click an option to jump — grant Accessibility to answer from here");
}

TEST(PanelContent, AnswersByKeystrokeOnlyWhereThatIsPossible) {
    SessionInfo info = session("a", SessionStatus::waiting, 1s);
    EXPECT_FALSE(PanelContent::answersByKeystroke(info, true, true));
    info.process.emplace();
    EXPECT_FALSE(PanelContent::answersByKeystroke(info, true, true));
    info.process->terminalPid = 42;
    EXPECT_TRUE(PanelContent::answersByKeystroke(info, true, true));
    EXPECT_FALSE(PanelContent::answersByKeystroke(info, false, true));
    EXPECT_FALSE(PanelContent::answersByKeystroke(info, true, false));
}

} // namespace
} // namespace sallowmere
