// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramRunner.h"

#include <QObject>

namespace sallowmere {

/// Each program gets a session of its own, which no terminal hangs up. Unlike `QProcess`, which
/// takes texts for UTF-16, ends what it started when it is destroyed and may copy this program's
/// page tables.
///
/// The first start makes this program ignore SIGPIPE, which is how those that it starts come to
/// ignore it, and no longer ignore SIGCHLD. Needs Linux 5.3.
class LinuxProgramRunner : public ProgramRunner {
public:
    std::optional<std::string> start(const Program& program, Ended ended) override;
    std::vector<std::string> environment() const override;

private:
    class Run;

    /// Parent of what runs.
    QObject runs_;
};

} // namespace sallowmere
