// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"
#include "X11/XClient.h"
#include "X11/XServer.h"

#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// The superuser becomes nobody, for good, with access to all files: sway does not run for the
/// superuser.
void becomeOrdinaryUser();

/// A Wayland desktop with an X server of its own, in a window that fills the screen of another X
/// server: whoever has that one's pointer and keyboard uses this desktop.
class Sway {
public:
    /// `outside` acts on the server around it.
    Sway(const XServer& server, XClient& outside);

    /// NAME=VALUE each, of its two displays, for programs on it.
    const std::vector<std::string>& variables() const { return variables_; }
    /// Of its X server.
    const std::string& display() const { return display_; }

    /// Has it do something, which must succeed at some time.
    void tell(const std::string& command) const;

private:
    void readDisplays(const std::string& file);
    void takeKeyboard(XClient& outside) const;

    TemporaryHome home_;
    std::unique_ptr<ChildProcess> process_;
    std::string display_;
    std::string socket_;
    std::vector<std::string> variables_;
};

} // namespace sallowmere
