// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/RefreshEngineTest.h"

namespace sallowmere {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// The machine sleeps: the clock jumps, and what waits for its time has waited as long as before.
class Resume : public RefreshEngineTest {
protected:
    static constexpr double night = 8 * 3'600;

    Resume() {
        addTranscript("a",
                      {promptIn("/w", "s1"),
                       transcript::assistantMessage(
                           R"("id":"m1","usage":{"input_tokens":100,"output_tokens":10})",
                           transcript::time("2026-11-20T11:59:00Z"))},
                      10);
        files.addFile(notification("p.json"), R"({"session_id":"s1"})", queue.now());
        processes.whileListing = [this] { ++scans; };
    }

    void jump(double seconds) { queue.setClock(advancedBy(queue.now(), seconds)); }

    int scans = 0;
};

TEST_F(Resume, RefreshesNoMoreOftenThanBefore) {
    beginAndSettle();
    for (const double seconds : {night, -3'600.0}) {
        fetches.back().completion(std::nullopt);
        settle();
        jump(seconds);
        scans = 0;
        const std::size_t asked = fetches.size();
        pass(60);
        EXPECT_EQ(scans, 30);
        EXPECT_EQ(fetches.size(), asked + 1);
    }
}

TEST_F(Resume, ShowsSessionsAndRequestsAsOldAsTheyAre) {
    beginAndSettle();
    EXPECT_EQ(state->sessions().at(0).status, SessionStatus::working);
    EXPECT_THAT(state->permissionRequests(), SizeIs(1));
    jump(night);
    pass(2);
    EXPECT_EQ(state->sessions().at(0).status, SessionStatus::idle);
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
}

TEST_F(Resume, BeginsNewUsageWindowsAndForgetsOfficialFigures) {
    beginAndSettle();
    fetches.at(0).completion(officialFigures(0.5, start));
    pass(20);
    EXPECT_EQ(state->usage().fiveHour.weightedTokens, 150);
    EXPECT_EQ(state->usage().fiveHour.officialFraction, 0.5);
    jump(night);
    pass(20);
    EXPECT_EQ(state->usage().fiveHour.weightedTokens, 0);
    EXPECT_EQ(state->usage().weekly.weightedTokens, 150);
    EXPECT_EQ(state->usage().fiveHour.officialFraction, std::nullopt);
    // The next question comes in its time, and its answer counts.
    pass(20);
    ASSERT_THAT(fetches, SizeIs(2));
    fetches.at(1).completion(officialFigures(0.1, queue.now()));
    pass(20);
    EXPECT_EQ(state->usage().fiveHour.officialFraction, 0.1);
}

TEST_F(Resume, LetsThePanelCloseThatWasOpenedByNews) {
    // The request is news to the model.
    beginAndSettle();
    ASSERT_TRUE(state->expanded());
    pass(2);
    jump(night);
    pass(2);
    EXPECT_TRUE(state->expanded());
    pass(1);
    EXPECT_FALSE(state->expanded());
}

} // namespace
} // namespace sallowmere
