// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"

#include <chrono>
#include <filesystem>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t hour = 3'600;

/// The clock that the panel goes by is turned while it runs; what counts the time from the start of
/// the machine goes on as ever, as it does when a laptop wakes up.
class TurnedClock : public EndToEndTest {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "the sanitizer has to be loaded before the clock's stand-in";
#endif
        sitDown();
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        session_->work("Pick a colour");
        turn(0);
        desk().startPanel({{"LD_PRELOAD=/usr/$LIB/faketime/libfaketimeMT.so.1",
                            "FAKETIME_TIMESTAMP_FILE=" + home() / "clock", "FAKETIME_NO_CACHE=1",
                            "FAKETIME_DONT_FAKE_MONOTONIC=1", "NO_FAKE_STAT=1"},
                           {}});
        ASSERT_EQ(desk().program->errors(), "") << "libfaketime is needed";
        panel().enter();
        panel().tree().find("Lantern, working");
    }

    PanelWindow& panel() {
        return *desk().panel;
    }
    LiveSession& session() {
        return *session_;
    }
    const TemporaryHome& home() {
        return desk().home.directory();
    }

    /// From now on the panel's clock is so many seconds fast.
    void turn(std::int64_t seconds) {
        offset_ = seconds;
        const std::string part =
            home().write("part", (seconds < 0 ? "" : "+") + std::to_string(seconds));
        fs::rename(part, home() / "clock");
    }

    /// The session's transcript was last written now, by the panel's clock.
    void stamp() {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const std::string transcript =
            home() / (".claude/projects/-work-lantern/" + session().id() + ".jsonl");
        ASSERT_TRUE(setModified(
            transcript, std::chrono::duration_cast<std::chrono::seconds>(now).count() + offset_));
    }

    /// The panel opens by itself for something new, and closes again.
    void expectNews() {
        panel().leave();
        session().finish();
        stamp();
        panel().waitUntilExpanded();
        panel().waitUntilCollapsed();
        panel().enter();
        panel().tree().find("Lantern, done");
        EXPECT_EQ(desk().program->errors(), "");
    }

private:
    std::unique_ptr<LiveSession> session_;
    std::int64_t offset_ = 0;
};

TEST_F(TurnedClock, AfterANightOfSleepAllIsAsTheMorningFindsIt) {
    const std::string request = desk().home.requestPermission(session(), "Run the tests?");
    panel().tree().find("Run the tests?");
    turn(8 * hour);
    panel().tree().find("Lantern, idle");
    panel().tree().waitUntilGone("Run the tests?");
    EXPECT_FALSE(fs::exists(request));

    session().work("Good morning");
    stamp();
    panel().tree().find("Lantern, working");
    expectNews();
}

TEST_F(TurnedClock, AnHourBackHoldsNothingUp) {
    turn(-hour);
    session().say("Amber");
    stamp();
    panel().tree().find("Lantern, working");
    const std::string request = desk().home.requestPermission(session(), "Run the tests?");
    panel().click("Dismiss", "push button");
    panel().tree().waitUntilGone("Run the tests?");
    expectNews();
}

} // namespace
} // namespace sallowmere
