// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/DesktopTest.h"

#include "Sallowmere/Terminals/AnswerInjector.h"
#include "Sallowmere/Terminals/TerminalNavigator.h"
#include "Support/Missing.h"
#include "Support/Times.h"
#include "X11/WaitFor.h"

#include <algorithm>
#include <iostream>

namespace sallowmere {

Desktop::Desktop(WindowManager::Kind kind, const std::vector<std::string>& serverArguments)
    : server(serverArguments), client(server.display()), terminals(server),
      connection(server.display()), applications(connection), keystrokes(connection),
      queue(at("2025-06-02T12:00:00Z")) {
    server.setLayout("us");
    manager = std::make_unique<WindowManager>(kind, server, client);
}

Terminal& Desktop::addXterm(const std::string& title) {
    return shown(terminals.startXterm(title));
}

Terminal& Desktop::addUrxvt(const std::string& title) {
    return shown(terminals.startUrxvt(title));
}

Terminal& Desktop::shown(Terminal& terminal) {
    waitFor(terminal.name + " to be managed", [&] { return client.isManaged(terminal.window); });
    client.activate(terminal.window);
    return terminal;
}

void Desktop::close(Terminal& terminal) {
    Terminals::close(terminal);
    waitFor("a terminal to close", [&] { return !client.isManaged(terminal.window); });
}

void Desktop::waitForFront(const Terminal& terminal) {
    // It may have been there all along and be about to be brought there once more.
    client.settle();
    waitFor(terminal.name + " in front",
            [&] { return client.hasFocus(terminal.window) && client.isFront(terminal.window); });
}

std::string Desktop::received(Terminal& terminal) {
    client.setFocus(terminal.window);
    client.tap(Key::space);
    while (!terminal.received.ends_with(' ')) {
        terminals.readOne();
    }
    terminal.received.pop_back();
    return terminal.received;
}

bool Desktop::nothingReceived() {
    return std::all_of(terminals.all().begin(), terminals.all().end(), [this](Terminal& terminal) {
        return terminal.isClosed || received(terminal).empty();
    });
}

bool Desktop::jump(const Terminal& terminal, const std::optional<std::string>& cwd) {
    SessionInfo session;
    if (cwd) {
        session.cwd = QString::fromStdString(*cwd);
    }
    session.process.emplace();
    session.process->pid = terminal.inside;
    session.process->terminalPid = terminal.owner;
    return TerminalNavigator::jump(session, applications, keystrokes);
}

bool Desktop::answer(int option, const Terminal& terminal) {
    return AnswerInjector::answer(option, terminal.owner, applications, keystrokes, queue);
}

void Desktop::letDigitCome() {
    EXPECT_EQ(queue.scheduled(), 1U);
    queue.advance(AnswerInjector::typingDelay);
    EXPECT_EQ(queue.scheduled(), 0U);
    waitUntilTyped();
}

void Desktop::waitUntilTyped() {
    EXPECT_TRUE(connection.serverTime() != XCB_CURRENT_TIME);
}

void DesktopTest::SetUp() {
    std::vector<std::string> needed = WindowManager::programs(GetParam());
    needed.insert(needed.end(), {"/usr/bin/Xvfb", "/usr/bin/setxkbmap", "/usr/bin/xkbcomp",
                                 "/usr/bin/xterm", "/usr/bin/urxvtd"});
    if (!hasPrograms(needed)) {
        MISSING_FOR_TEST("an X server, a window manager or a terminal is not installed");
    }
    desktop_ = std::make_unique<Desktop>(GetParam(), serverArguments());
}

void DesktopTest::TearDown() {
    if (HasFailure() && desktop_) {
        std::cerr << desktop_->server.log();
    }
}

} // namespace sallowmere
