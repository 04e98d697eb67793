// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Application/AppState.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// What a piece of work took, in milliseconds: on the clock, and of a processor by its own thread.
struct Cost {
    double wall = 0;
    double cpu = 0;
};

/// What the engine did. Times of children are not in it.
struct EngineCosts {
    /// Each session scan, with waiting for its `ps`.
    std::vector<Cost> scans;
    /// Each `ps`, from before its start until its end.
    std::vector<Cost> listings;
    /// Each piece that the main thread had to do.
    std::vector<Cost> mainThread;
};

/// The real engine and model on a home directory, with the real `ps`, an official service that
/// tells nothing and a desktop that does nothing. Needs a `QCoreApplication`; main thread.
class MeasuredEngine {
public:
    MeasuredEngine(const std::string& home, int maxSessions);
    ~MeasuredEngine();

    AppState& state();

    /// Starts the engine. `onScan` is called each time the model has taken over what a scan found.
    void start(std::function<void()> onScan);

    /// Since the start or the last call.
    EngineCosts takeCosts();

private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

} // namespace sallowmere
