// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace sallowmere {

/// Returns once the condition holds. Throws when it does not within a time that is long enough for
/// the slowest machine, so that a test which hangs fails instead.
template <typename Condition>
void waitFor(const std::string& what, Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("waited in vain for " + what);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace sallowmere
