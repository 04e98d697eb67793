// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Panel/ChildProgram.h"
#include "TemporaryDirectory.h"

#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// An X server of 1920 by 1080 points that nobody else uses, with a window manager; no session bus.
class Desktop {
public:
    /// Returns when programs can be started on it.
    Desktop();

    const std::string& display() const { return display_; }

    /// What to run a program with that has this home directory.
    ChildProgram::Command command(const std::vector<std::string>& arguments,
                                  const std::string& home) const;

    /// What all programs on it have written.
    std::string log() const;

private:
    void startServer();
    void startWindowManager();

    TemporaryDirectory directory_;
    std::string display_;
    std::unique_ptr<ChildProgram> server_;
    std::unique_ptr<ChildProgram> windowManager_;
};

} // namespace sallowmere
