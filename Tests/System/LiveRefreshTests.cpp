// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/TranscriptLines.h"
#include "System/ChildProcess.h"
#include "System/DemoHome.h"
#include "System/LiveModel.h"
#include "System/ScarceDescriptors.h"
#include "System/TemporaryHome.h"

#include <QDateTime>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace sallowmere {
namespace {

using testing::Gt;
using testing::IsEmpty;
using testing::SizeIs;

const QString tides = QStringLiteral("Fix the tide table around midnight 🌊");
const QString hours = QStringLiteral("Öffnungszeiten an Feiertagen 👩🏽‍🌾");
const QString darkTheme = QStringLiteral("Dark theme for the night shift 🌙");

bool eventually(const std::function<bool()>& condition) {
    return EventLoop::runUntil(condition);
}

/// A member "timestamp" for a line that is written now.
std::string presentTime() {
    return transcript::time(
        QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toStdString());
}

void append(const std::string& path, const std::string& line) {
    std::ofstream stream(path, std::ios::app);
    stream << line << '\n';
}

/// How often the panel has opened since this was made.
class Openings {
public:
    explicit Openings(AppState& state) {
        QObject::connect(&state, &AppState::expandedWillChange, &watcher_,
                         [this](bool expanded) { count_ += expanded ? 1 : 0; });
    }

    int count() const { return count_; }

private:
    int count_ = 0;
    QObject watcher_;
};

int soundsCalled(LiveModel& live, const std::string& name) {
    int count = 0;
    for (const FakeSounds::Played& sound : live.sounds().played) {
        count += sound.name == name ? 1 : 0;
    }
    return count;
}

/// The pid of the process of a listed session; 0 when either is missing.
std::int32_t pidOf(const LiveModel& live, const QString& title) {
    const SessionInfo* session = live.session(title);
    return session != nullptr && session->process ? session->process->pid : 0;
}

bool isOrphan(LiveModel& live, std::int32_t pid) {
    const std::vector<ClaudeProcess>& orphans = live.state().orphanProcesses();
    return std::any_of(orphans.begin(), orphans.end(),
                       [=](const ClaudeProcess& orphan) { return orphan.pid == pid; });
}

TEST(LiveRefresh, ShowsTheSessionsAndTheUsageOfAHome) {
    const DemoHome home;
    LiveModel live(home.path());
    EXPECT_TRUE(eventually([&] { return live.state().usage().computedAt != distantPast; }));
    EXPECT_THAT(live.state().sessions(), SizeIs(5));
    ASSERT_NE(live.session(tides), nullptr);
    EXPECT_EQ(live.session(tides)->status, SessionStatus::working);
    ASSERT_NE(live.session(hours), nullptr);
    EXPECT_EQ(live.session(hours)->status, SessionStatus::done);
    EXPECT_THAT(live.state().usage().fiveHour.weightedTokens, Gt(0));
    EXPECT_THAT(live.state().usage().weekly.weightedTokens, Gt(0));
    EXPECT_EQ(live.state().usage().fiveHour.officialFraction, std::nullopt);
    EXPECT_FALSE(live.state().expanded());
}

TEST(LiveRefresh, FollowsATranscript) {
    const DemoHome home;
    LiveModel live(home.path());
    ASSERT_TRUE(eventually([&] { return live.session(hours) != nullptr; }));
    const std::string path = live.session(hours)->id.toStdString();
    const Openings openings(live.state());

    append(path, transcript::assistant(transcript::question("Which?"), presentTime()));
    EXPECT_TRUE(eventually([&] { return live.session(hours)->ask.has_value(); }));
    EXPECT_EQ(live.session(hours)->ask->question, "Which?");
    EXPECT_EQ(live.session(hours)->status, SessionStatus::waiting);
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(soundsCalled(live, "Ping"), 1);

    append(path, transcript::toolResult(presentTime()));
    EXPECT_TRUE(eventually([&] { return !live.session(hours)->ask.has_value(); }));
    EXPECT_EQ(live.session(hours)->status, SessionStatus::working);

    append(path, transcript::turnEnd(presentTime()));
    EXPECT_TRUE(eventually([&] { return live.session(hours)->status == SessionStatus::done; }));
    EXPECT_TRUE(live.state().recentCompletions().contains(live.session(hours)->sessionId));
    EXPECT_EQ(soundsCalled(live, "Glass"), 1);

    EXPECT_TRUE(eventually([&] { return !live.state().expanded(); }));
}

TEST(LiveRefresh, FollowsNotifications) {
    const DemoHome home;
    LiveModel live(home.path());
    ASSERT_TRUE(eventually([&] { return live.session(hours) != nullptr; }));
    const QString sessionId = live.session(hours)->sessionId;
    const std::string path = home.path() + "/.config/sallowmere/notifications/p.json";
    const auto write = [&] {
        append(path, R"({"session_id":")" + sessionId.toStdString() + R"(","message":"May I?"})");
    };
    const auto& requests = live.state().permissionRequests();
    const Openings openings(live.state());

    write();
    EXPECT_TRUE(eventually([&] { return !requests.empty(); }));
    ASSERT_THAT(requests, SizeIs(1));
    EXPECT_EQ(requests[0].id, "p.json");
    EXPECT_EQ(requests[0].sessionId, sessionId);
    EXPECT_EQ(requests[0].message, "May I?");
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(soundsCalled(live, "Submarine"), 1);

    std::filesystem::remove(path);
    EXPECT_TRUE(eventually([&] { return requests.empty(); }));

    write();
    EXPECT_TRUE(eventually([&] { return !requests.empty(); }));
    live.state().respondToPermission(requests.at(0), 1);
    EXPECT_THAT(requests, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(LiveRefresh, FollowsProcesses) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("project");
    home.addSession("-project", "Hello", directory);
    LiveModel live(home.path());
    {
        ChildProcess assistant({SALLOWMERE_ASSISTANT, {"claude"}, {}, directory});
        const ChildProcess stray({SALLOWMERE_ASSISTANT, {"claude"}, {}, home.path()});
        EXPECT_TRUE(eventually([&] {
            return pidOf(live, "Hello") == assistant.pid() && isOrphan(live, stray.pid());
        }));
        EXPECT_FALSE(isOrphan(live, assistant.pid()));
        assistant.finish();
        EXPECT_TRUE(eventually([&] { return pidOf(live, "Hello") == 0; }));
        EXPECT_TRUE(isOrphan(live, stray.pid()));
    }
    EXPECT_THAT(live.state().sessions(), SizeIs(1));
}

TEST(LiveRefresh, FollowsAStory) {
    const DemoHome home;
    LiveModel live(home.path());
    ASSERT_TRUE(eventually([&] { return live.session(tides) != nullptr; }));
    const QString tidesId = live.session(tides)->sessionId;
    const ChildProcess story({demoHomeScript,
                              {"make-demo-home", home.path(), "--live", "10"},
                              {"PATH=/usr/bin:/bin"},
                              {}});
    // At its end one session is at work, one has asked, and one that was at work is done.
    EXPECT_TRUE(eventually([&] {
        const SessionInfo* asks = live.session(hours);
        return live.session(darkTheme) != nullptr && asks != nullptr && asks->ask;
    }));
    EXPECT_TRUE(eventually([&] { return live.session(tides)->status == SessionStatus::done; }));
    EXPECT_TRUE(live.state().recentCompletions().contains(tidesId));
    EXPECT_THAT(soundsCalled(live, "Glass"), Gt(0));
    EXPECT_THAT(soundsCalled(live, "Ping"), Gt(0));
    EXPECT_THAT(live.state().sessions(), SizeIs(6));
}

TEST(LiveRefresh, ShowsSessionsThoughTheListingOfProcessesHangs) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("project");
    home.addSession("-project", "Hello", directory);
    const ChildProcess assistant({SALLOWMERE_ASSISTANT, {"claude"}, {}, directory});
    const std::string ps = home.writeProgram("ps", "exec sleep 100000");
    LiveModel live(home.path(), ps, 1);
    EXPECT_TRUE(eventually([&] { return live.session("Hello") != nullptr; }));
    EXPECT_EQ(pidOf(live, "Hello"), 0);
    home.writeProgram("new-ps", "exec /bin/ps \"$@\"");
    std::filesystem::rename(home / "new-ps", ps);
    EXPECT_TRUE(eventually([&] { return pidOf(live, "Hello") == assistant.pid(); }));
}

TEST(LiveRefresh, CatchesUpAfterATimeWithoutDescriptors) {
    const TemporaryHome home;
    home.addSession("-project", "Hello", home / "project");
    LiveModel live(home.path());
    ASSERT_TRUE(eventually([&] { return live.state().usage().computedAt != distantPast; }));
    // Just after a scan nothing is open that is closed soon.
    bool scanned = false;
    QObject::connect(&live.state(), &AppState::sessionsWillChange, &live.state(),
                     [&scanned] { scanned = true; });
    ASSERT_TRUE(eventually([&] { return scanned; }));
    {
        const ScarceDescriptors none(0);
        EXPECT_TRUE(eventually([&] { return live.state().sessions().empty(); }));
    }
    EXPECT_TRUE(eventually([&] { return live.session("Hello") != nullptr; }));
    EXPECT_FALSE(live.state().expanded());
}

TEST(LiveRefresh, GoesOnWhenTheHomeIsMovedAwayAndBack) {
    const TemporaryHome home;
    home.addSession("-project", "Hello", home / "project");
    append(home / ".claude/projects/-project/5e55.jsonl",
           transcript::assistantMessage(R"("id":"m2","usage":{"input_tokens":7})", presentTime()));
    LiveModel live(home.path());
    EXPECT_TRUE(eventually([&] { return live.session("Hello") != nullptr; }));
    EXPECT_TRUE(eventually([&] { return live.state().usage().fiveHour.weightedTokens == 7; }));
    EXPECT_EQ(live.state().usage().fiveHour.officialFraction, std::nullopt);

    std::filesystem::rename(home.path(), home.path() + " away");
    EXPECT_TRUE(eventually([&] { return live.state().sessions().empty(); }));
    // The next computation brings the official figures, and keeps what was counted.
    EXPECT_TRUE(eventually([&] { return live.state().usage().fiveHour.officialFraction == 0.5; }));
    EXPECT_EQ(live.state().usage().fiveHour.weightedTokens, 7);

    live.sounds().played.clear();
    std::filesystem::rename(home.path() + " away", home.path());
    EXPECT_TRUE(eventually([&] { return live.session("Hello") != nullptr; }));
    EXPECT_THAT(live.sounds().played, IsEmpty());
    EXPECT_FALSE(live.state().expanded());
}

TEST(LiveRefresh, MayBeOverAtAnyMoment) {
    const DemoHome home;
    for (int i = 0; i < 20; ++i) {
        LiveModel live(home.path());
        for (int turn = 0; turn < i; ++turn) {
            EventLoop::runReady();
        }
    }
    for (const bool withUsage : {false, true}) {
        LiveModel live(home.path());
        EXPECT_TRUE(eventually([&] {
            return withUsage ? live.state().usage().computedAt != distantPast
                             : !live.state().sessions().empty();
        }));
    }
}

} // namespace
} // namespace sallowmere
