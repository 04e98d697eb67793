// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace sallowmere {

/// Starts a part of a desktop that lives in `home` alone, with these further variables. What it
/// complains about is in the file "complaints" there.
std::unique_ptr<ChildProcess> startDaemon(const TemporaryHome& home,
                                          const std::vector<std::string>& arguments,
                                          const std::vector<std::string>& variables = {});

/// Waits for the condition; false when it does not come true for so long that it never will.
template <typename Condition>
bool comesTrue(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace sallowmere
