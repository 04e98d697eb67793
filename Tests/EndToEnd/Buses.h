// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// A session bus, and the bus that assistive programs find controls on. They serve all tests of
/// one process, as the library that reads from the second one connects with it only once.
class Buses {
public:
    Buses();

    /// For the environment of a program that uses them.
    const std::vector<std::string>& variables() const { return variables_; }

private:
    Command command(const std::vector<std::string>& programAndArguments) const;
    void startSession();
    void startAccessibility();

    TemporaryHome home_;
    std::unique_ptr<ChildProcess> session_;
    std::unique_ptr<ChildProcess> accessibility_;
    std::string sessionAddress_;
    std::vector<std::string> variables_;
};

} // namespace sallowmere
