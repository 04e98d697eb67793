// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace sallowmere {

/// Bytes. Real calls have some kilobytes, and as many more as the tool's input and output.
inline constexpr std::size_t largestInput = 16'777'216;

/// What can be read from a descriptor until its end, or until the time is over: nobody is waited
/// for any longer. Empty when it cannot be read, and when there is more than `largestInput`, which
/// is read all the same lest its writer fail. `JsonReader::padding` bytes behind it are readable.
std::string readInput(int descriptor, std::chrono::milliseconds time);

} // namespace sallowmere
