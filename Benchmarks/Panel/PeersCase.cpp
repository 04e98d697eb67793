// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Cases.h"
#include "Panel/Desktop.h"
#include "Panel/PanelHome.h"
#include "Panel/ProcessReadings.h"
#include "Panel/RunningPanel.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace sallowmere {

namespace {

/// Another panel, as its package sets it up.
struct Peer {
    const char* name;
    std::vector<std::string> arguments;
};

const std::vector<Peer>& peers() {
    static const std::vector<Peer> all{
        {"polybar", {"/usr/bin/polybar", "--config=/etc/polybar/config.ini", "example"}},
        {"tint2", {"/usr/bin/tint2", "-c", "/etc/xdg/tint2/tint2rc"}},
        {"lxqt-panel", {"/usr/bin/lxqt-panel"}},
        {"conky", {"/usr/bin/conky", "-c", "/etc/conky/conky.conf"}},
    };
    return all;
}

void measureProcess(const char* name, pid_t process, int seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(std::max(1, seconds / 6)));
    const auto before = ProcessReadings::processorTime(process);
    const auto waits = ProcessReadings::waits(process);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const auto after = ProcessReadings::processorTime(process);
    const long waited = ProcessReadings::waitsBetween(waits, ProcessReadings::waits(process));
    const auto memory = ProcessReadings::memory(process);
    std::printf("| %s | %.1f | %.1f | %.1f | %.2f %% | %ld |\n", name, memory.resident,
                memory.proportional, memory.privateDirty,
                (after.own + after.children - before.own - before.children) / seconds / 10,
                waited * 60 / seconds);
    std::fflush(stdout);
}

void measurePeer(const Peer& peer, int seconds) {
    const Desktop desktop;
    const TemporaryDirectory home;
    const ChildProgram program(desktop.command(peer.arguments, home.path()));
    try {
        measureProcess(peer.name, program.pid(), seconds);
    } catch (const std::exception& error) {
        throw std::runtime_error(std::string(peer.name) + ": " + error.what() + '\n'
                                 + desktop.log());
    }
}

} // namespace

void measurePeers(const MeasuredProgram& measured, int seconds) {
    std::printf("\n| at rest for %d seconds | resident MiB | proportional | private and changed | "
                "of a core | waits in a minute |\n"
                "| --- | --- | --- | --- | --- | --- |\n",
                seconds);
    {
        const PanelHome home(measured.home);
        const Desktop desktop;
        ScreenWatch watch(desktop.display());
        watch.paintBackground();
        const RunningPanel panel(desktop, watch, measured.program, home.path());
        measureProcess("sallowmere", panel.pid(), seconds);
    }
    for (const Peer& peer : peers()) {
        measurePeer(peer, seconds);
    }
}

} // namespace sallowmere
