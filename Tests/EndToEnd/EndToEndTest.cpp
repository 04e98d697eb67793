// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"

#include "X11/WaitFor.h"

#include <iostream>
#include <stdexcept>

namespace sallowmere {

namespace {

const Buses& sharedBuses() {
    static const Buses buses;
    return buses;
}

} // namespace

Desk::Desk(WindowManager::Kind kind, const std::string& settings,
           const std::vector<std::string>& serverArguments)
    : buses(sharedBuses()), server(serverArguments), client(server.display()), user(client),
      home(settings), terminals(server) {
    server.setLayout("us");
    // Where no window is.
    const Box screen = Windows::screen(client);
    user.moveTo(screen.width - 4, screen.height - 4);
    manager = std::make_unique<WindowManager>(kind, server, client);
}

Terminal& Desk::addAssistant(const LiveSession& session) {
    return shown(terminals.startXterm(session.title(), home.assistant(), session.directory()));
}

Terminal& Desk::addOther(const std::string& title) {
    return shown(terminals.startXterm(title));
}

Terminal& Desk::shown(Terminal& terminal) {
    waitFor(terminal.name + " to be managed", [&] { return client.isManaged(terminal.window); });
    client.activate(terminal.window);
    return terminal;
}

RunningPanel& Desk::startProgram(Circumstances circumstances) {
    circumstances.variables.push_back("DISPLAY=" + server.display());
    program = std::make_unique<RunningPanel>(home, buses, circumstances);
    return *program;
}

PanelWindow& Desk::startPanel(const Circumstances& circumstances) {
    panel = std::make_unique<PanelWindow>(client, user, startProgram(circumstances));
    return *panel;
}

void Desk::waitForFront(const Terminal& terminal) {
    waitFor(terminal.name + " in front",
            [&] { return client.hasFocus(terminal.window) && client.isFront(terminal.window); });
}

std::string Desk::awaitKey(Terminal& terminal) {
    const std::size_t before = terminal.received.size();
    while (terminal.received.size() == before) {
        terminals.readOne();
    }
    return terminal.received;
}

std::string Desk::received(Terminal& terminal) {
    client.tap(Key::space);
    while (!terminal.received.ends_with(' ')) {
        terminals.readOne();
    }
    terminal.received.pop_back();
    return terminal.received;
}

void requirePrograms(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (!hasPrograms({path})) {
            throw std::runtime_error(path + " is not installed");
        }
    }
}

Desk& EndToEndTest::sitDown(WindowManager::Kind kind, const std::string& settings,
                            const std::vector<std::string>& serverArguments) {
    requirePrograms({"/usr/bin/Xvfb", "/usr/bin/setxkbmap", "/usr/bin/xkbcomp", "/usr/bin/xterm",
                     "/usr/bin/dbus-daemon", "/usr/libexec/at-spi-bus-launcher",
                     "/usr/libexec/at-spi2-registryd", "/bin/ps"});
    requirePrograms(WindowManager::programs(kind));
    desk_ = std::make_unique<Desk>(kind, settings, serverArguments);
    return *desk_;
}

void EndToEndTest::TearDown() {
    if (HasFailure() && desk_) {
        std::cerr << desk_->server.log();
        if (desk_->program) {
            std::cerr << desk_->program->errors();
        }
        if (desk_->panel && !desk_->program->hasEnded()) {
            std::cerr << desk_->panel->box() << '\n' << desk_->panel->tree().text();
        }
    }
}

} // namespace sallowmere
