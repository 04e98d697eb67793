// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace sallowmere {

/// A moment in UTC. Microseconds hold every time a transcript or a file system gives us exactly
/// enough and leave room for any year from 1 to 9999; differences never overflow.
using Timestamp = std::chrono::sys_time<std::chrono::microseconds>;

/// Earlier than anything that really happened: 0001-01-01T00:00:00Z.
inline constexpr Timestamp distantPast =
    std::chrono::sys_days{std::chrono::January / 1 / std::chrono::year{1}};

/// Later than anything that will: 9999-12-31T00:00:00Z.
inline constexpr Timestamp distantFuture =
    std::chrono::sys_days{std::chrono::December / 31 / std::chrono::year{9999}};

/// Seconds from `start` to `end`; negative when `end` is the earlier one.
constexpr double secondsBetween(Timestamp start, Timestamp end) {
    return std::chrono::duration<double>(end - start).count();
}

/// The moment `seconds` after `moment`, to the nearest microsecond towards zero.
/// `seconds` must be finite and within some thousand years.
constexpr Timestamp advancedBy(Timestamp moment, double seconds) {
    return moment
           + std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::duration<double>(seconds));
}

} // namespace sallowmere
