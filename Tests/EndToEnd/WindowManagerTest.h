// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/EndToEndTest.h"

#include <memory>

namespace sallowmere {

/// Under each window manager: a user busy in a terminal, and a panel with a session to prompt.
class WindowManagerTest : public EndToEndTest,
                          public testing::WithParamInterface<WindowManager::Kind> {
protected:
    void SetUp() override;

    Terminal& terminal() { return *terminal_; }
    PanelWindow& panel() { return *desk().panel; }
    XClient& client() { return desk().client; }

    /// Where the bar has to be, on a screen with nothing above it.
    Box barPlace();
    /// Opens the session's details, which have the field for a prompt; returns that.
    Control openDetails();
    /// Opens the details and clicks into the field.
    void startTyping();
    void waitForField();
    Control field();
    void waitForText(const std::string& text);
    /// Waits until the terminal has the keyboard, for the window manager too.
    void waitForKeyboardBack();

private:
    Terminal* terminal_ = nullptr;
};

#define UNDER_EACH_WINDOW_MANAGER(suite)                                                           \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        , suite,                                                                                   \
        testing::Values(WindowManager::Kind::openbox, WindowManager::Kind::xfwm4,                  \
                        WindowManager::Kind::i3, WindowManager::Kind::kwin,                        \
                        WindowManager::Kind::mutter),                                              \
        [](const auto& instance) { return WindowManager::name(instance.param); })

} // namespace sallowmere
