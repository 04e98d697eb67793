// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace sallowmere {

/// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into a call on the main
/// thread. One at a time; the signals end the program again when this has gone.
class TerminationSignals {
public:
    /// Throws `std::system_error` when the system has no file descriptor left.
    explicit TerminationSignals(std::function<void()> terminate);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    std::unique_ptr<QSocketNotifier> arrived_;
};

} // namespace sallowmere
