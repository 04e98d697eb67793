// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/Buses.h"
#include "EndToEnd/LiveHome.h"
#include "EndToEnd/RunningPanel.h"
#include "EndToEnd/User.h"
#include "X11/Terminals.h"
#include "X11/WindowManager.h"
#include "X11/XClient.h"
#include "X11/XServer.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// Everything that a person sits in front of, with the panel on it.
struct Desk {
    explicit Desk(WindowManager::Kind kind, const std::string& settings = {},
                  const std::vector<std::string>& serverArguments = {});

    /// A terminal that a session's assistant runs in; it has the keyboard afterwards.
    Terminal& addAssistant(const LiveSession& session);
    /// A terminal with something else in it; it has the keyboard afterwards.
    Terminal& addOther(const std::string& title = "other");

    /// Starts the program; its window is there afterwards.
    PanelWindow& startPanel(const Circumstances& circumstances = {});
    RunningPanel& startProgram(Circumstances circumstances = {});

    /// Waits until this terminal has come to the front with the keyboard.
    void waitForFront(const Terminal& terminal);
    /// Waits until a key has come into the terminal, and returns all that came so far.
    std::string awaitKey(Terminal& terminal);
    /// All that came into a terminal that has the keyboard; the test types a blank after it.
    std::string received(Terminal& terminal);

    const Buses& buses;
    XServer server;
    XClient client;
    User user;
    LiveHome home;
    Terminals terminals;
    std::unique_ptr<WindowManager> manager;
    std::unique_ptr<RunningPanel> program;
    std::unique_ptr<PanelWindow> panel;

private:
    Terminal& shown(Terminal& terminal);
};

/// Fails, with a word, when this machine lacks what the tests start.
void requirePrograms(const std::vector<std::string>& paths);

/// A test with a desk, which says what the programs on it complained about when it fails.
class EndToEndTest : public testing::Test {
protected:
    void TearDown() override;

    Desk& sitDown(WindowManager::Kind kind = WindowManager::Kind::openbox,
                  const std::string& settings = {},
                  const std::vector<std::string>& serverArguments = {});
    Desk& desk() { return *desk_; }

private:
    std::unique_ptr<Desk> desk_;
};

} // namespace sallowmere
