// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/EndToEndTest.h"

#include <memory>

namespace sallowmere {

/// A session's assistant works in a terminal, its user is busy in another one, and the panel knows
/// of both the session and its assistant.
class RunningSession : public EndToEndTest {
protected:
    void SetUp() override;

    LiveSession& session() { return *session_; }
    Terminal& assistant() { return *assistant_; }
    Terminal& other() { return *other_; }
    PanelWindow& panel() { return *desk().panel; }

    /// Checks that nothing was typed but these keys, and only there.
    void expectKeys(const std::string& keys);

private:
    std::unique_ptr<LiveSession> session_;
    Terminal* assistant_ = nullptr;
    Terminal* other_ = nullptr;
};

} // namespace sallowmere
