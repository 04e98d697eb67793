// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/Fortnight.h"

#include "Sallowmere/Permissions/NotificationWatcher.h"

#include <array>
#include <chrono>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

namespace sallowmere {

namespace {

constexpr double refresh = RefreshEngine::sessionInterval;
constexpr double hour = 3'600;
constexpr std::uint64_t stepsPerDay = 43'200;
constexpr std::size_t mostProcesses = 8;

/// Four gigabytes in a fortnight, a message to 20 KiB.
WorldPace ordinaryPace() {
    WorldPace pace;
    pace.sessions = 24;
    pace.bytesPerSecond = 3'550;
    pace.stepBytes = 20 << 10;
    pace.largest = 16 << 20;
    pace.goingsPerHour = 1.5;
    pace.shorteningsPerHour = 0.2;
    pace.turnsPerHour = 30;
    return pace;
}

Timestamp beginning() {
    using namespace std::chrono;
    return sys_days{November / 2 / 2026};
}

void setTime(const std::filesystem::path& path, Timestamp now) {
    const timespec time{now.time_since_epoch().count() / 1'000'000, 0};
    const std::array<timespec, 2> times{time, time};
    utimensat(AT_FDCWD, path.c_str(), times.data(), 0);
}

} // namespace

Fortnight::Fortnight(const std::filesystem::path& home, std::uint64_t seed)
    : home_(home), random_(seed + 1), time_(beginning()), world_(home, seed, ordinaryPace()),
      engine_(time_, home.native()) {
    std::filesystem::create_directories(NotificationWatcher::directory(home.native()));
}

void Fortnight::step() {
    world_.step(time_.now(), refresh);
    if (happens(45)) {
        moveProcesses();
    }
    if (happens(60)) {
        askPermission();
    }
    if (happens(600)) {
        changeService();
    }
    if (happens(20)) {
        useThePanel();
    }
    if (++steps_ % stepsPerDay == stepsPerDay / 2) {
        turnClock();
    }
    time_.pass(refresh);
}

void Fortnight::forget() {
    constexpr int refreshes = 300;
    // Without the directory of all there would be no news of them.
    for (const auto& project : std::filesystem::directory_iterator(home_ / ".claude/projects")) {
        std::filesystem::remove_all(project);
    }
    while (engine_.processes().count() > 0) {
        engine_.processes().endOne();
    }
    time_.turnClock(UsageCalculator::horizonSpan + hour);
    for (int turn = 0; turn < refreshes; ++turn) {
        time_.pass(refresh);
    }
}

void Fortnight::moveProcesses() {
    if (below(2) == 0 && engine_.processes().count() < mostProcesses) {
        engine_.processes().begin(++lastProcess_,
                                  home_ / "soak" / ("project-" + std::to_string(below(8))));
    } else {
        engine_.processes().endOne();
    }
}

void Fortnight::askPermission() {
    const auto& sessions = engine_.state().sessions();
    const std::filesystem::path path =
        std::filesystem::path(NotificationWatcher::directory(home_.native()))
        / (std::to_string(++permissions_) + ".json");
    const std::string session =
        sessions.empty() ? "none" : sessions[below(sessions.size())].sessionId.toStdString();
    std::ofstream(path) << R"({"session_id":")" << session << R"(","message":"May I?"})";
    setTime(path, time_.now());
}

void Fortnight::changeService() {
    constexpr std::array<int, 8> states{200, 200, 200, 429, 500, SoakService::silence, 401, 200};
    engine_.service().become(states[below(states.size())]);
}

void Fortnight::useThePanel() {
    PanelModel& panel = engine_.panel();
    switch (below(8)) {
    case 0:
        panel.togglePin();
        return;
    case 1:
    case 2:
        engine_.state().hoverChanged(true);
        return;
    case 3:
        engine_.state().hoverChanged(false);
        return;
    case 4:
        panel.setContentHeight(static_cast<double>(below(600)));
        return;
    default:
        useSession();
    }
}

void Fortnight::useSession() {
    const AppState& state = engine_.state();
    PanelModel& panel = engine_.panel();
    if (!state.permissionRequests().empty() && below(3) == 0) {
        const QString request = state.permissionRequests().front().id;
        below(2) == 0 ? panel.respond(request, 1) : panel.dismiss(request);
        return;
    }
    if (state.sessions().empty()) {
        return;
    }
    const SessionInfo& session = state.sessions()[below(state.sessions().size())];
    const QString id = session.id;
    switch (below(4)) {
    case 0:
        panel.toggleSelection(id);
        return;
    case 1:
        panel.sendPrompt(id, QStringLiteral("go on"));
        return;
    case 2:
        panel.jump(id);
        return;
    default:
        panel.answer(id, 1);
    }
}

void Fortnight::turnClock() {
    const std::uint64_t day = steps_ / stepsPerDay;
    if (day % 5 == 2) {
        time_.turnClock(8 * hour);
    } else if (day % 5 == 4) {
        time_.turnClock(-hour);
    }
}

bool Fortnight::happens(double everySeconds) {
    constexpr std::uint64_t fine = 1'000'000;
    return static_cast<double>(below(fine)) / fine < refresh / everySeconds;
}

} // namespace sallowmere
