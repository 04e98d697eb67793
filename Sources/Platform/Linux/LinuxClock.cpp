// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxClock.h"

namespace sallowmere {

Clock linuxClock() {
    return [] { return std::chrono::floor<Timestamp::duration>(std::chrono::system_clock::now()); };
}

Clock linuxSteadyClock() {
    return [] {
        return Timestamp(std::chrono::floor<Timestamp::duration>(
            std::chrono::steady_clock::now().time_since_epoch()));
    };
}

} // namespace sallowmere
