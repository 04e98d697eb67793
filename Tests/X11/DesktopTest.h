// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Applications.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Keystrokes.h"
#include "Support/FakeQueues.h"
#include "X11/Terminals.h"
#include "X11/WindowManager.h"
#include "X11/XClient.h"
#include "X11/XServer.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace sallowmere {

/// A desktop of the test's own: an X server, a window manager and terminals, and what is tested
/// connected with it.
struct Desktop {
    explicit Desktop(WindowManager::Kind kind,
                     const std::vector<std::string>& serverArguments = {});

    /// Starts a terminal and waits until it is shown and has the keyboard.
    Terminal& addXterm(const std::string& title);
    Terminal& addUrxvt(const std::string& title);
    /// Ends a terminal and waits until its window has gone.
    void close(Terminal& terminal);

    /// Waits until this terminal has been brought to the front with the keyboard.
    void waitForFront(const Terminal& terminal);
    /// What a terminal has received, with all that was typed until now: the test gives it the
    /// keyboard, types a blank and waits for that.
    std::string received(Terminal& terminal);
    /// Whether this and all other terminals together received nothing at all.
    bool nothingReceived();

    bool jump(const Terminal& terminal, const std::optional<std::string>& cwd = std::nullopt);
    /// Answers; the digit comes with `queue.advance(0.4)`.
    bool answer(int option, const Terminal& terminal);
    /// Lets the time come at which the digit is typed.
    void letDigitCome();
    /// Waits until the server has done all that was asked of it, before the test, on a connection
    /// of its own, asks for anything else.
    void waitUntilTyped();

    XServer server;
    XClient client;
    std::unique_ptr<WindowManager> manager;
    Terminals terminals;
    X11Connection connection;
    X11Applications applications;
    X11Keystrokes keystrokes;
    FakeMainQueue queue;

private:
    Terminal& shown(Terminal& terminal);
};

/// Runs once for each window manager.
class DesktopTest : public testing::TestWithParam<WindowManager::Kind> {
protected:
    void SetUp() override;
    void TearDown() override;

    virtual std::vector<std::string> serverArguments() const { return {}; }

    Desktop& desktop() { return *desktop_; }

private:
    std::unique_ptr<Desktop> desktop_;
};

#define ON_EACH_WINDOW_MANAGER(suite)                                                              \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        , suite, testing::Values(WindowManager::Kind::openbox, WindowManager::Kind::xfwm4),        \
        [](const auto& instance) { return WindowManager::name(instance.param); })

} // namespace sallowmere
