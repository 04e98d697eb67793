// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/EndToEndTest.h"

#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// A session that no terminal has open, so that it can be prompted, and a user busy in a terminal.
class PromptingTest : public EndToEndTest {
protected:
    void SetUp() override;

    LiveSession& session() { return *session_; }
    Terminal& other() { return *other_; }
    PanelWindow& panel() { return *desk().panel; }

    /// What the assistant does when it runs headlessly, as shell commands.
    void assistantDoes(const std::string& commands) const;
    /// The arguments of its runs so far, joined with blanks.
    std::vector<std::string> assistantCalls() const;

    /// Opens the panel and selects the session in it.
    void openDetails();
    Control field();
    /// Clicks in the field and waits until it has the keyboard.
    void clickField();
    void waitForText(const std::string& text);

private:
    std::string settings() const;

    /// Where the program is told to find the assistant.
    TemporaryHome programs_;
    std::unique_ptr<LiveSession> session_;
    Terminal* other_ = nullptr;
};

} // namespace sallowmere
