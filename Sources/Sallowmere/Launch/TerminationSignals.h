// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace sallowmere {

/// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into a call on the main
/// thread. Signals that were ignored stay so. One at a time; when this has gone all is as before.
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
