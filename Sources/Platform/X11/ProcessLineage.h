// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace sallowmere {

/// Who started a process.
namespace ProcessLineage {

/// How many ancestors are looked at.
inline constexpr int maximumAncestors = 32;

/// Absent when it is not known (any more).
using Parent = std::function<std::optional<std::int32_t>(std::int32_t)>;

/// The parent as the file `/proc/PID/stat` tells it; absent for any other text. The process's name
/// stands before it and may hold blanks and parentheses.
std::optional<std::int32_t> parentIn(std::string_view stat);

/// The parent that the kernel tells.
std::optional<std::int32_t> parentOf(std::int32_t pid);

/// The process itself, its parent and so on, as far as they are known and short of process 1,
/// which starts everything. Empty for `pid` below 2.
std::vector<std::int32_t> of(std::int32_t pid, const Parent& parent = parentOf);

} // namespace ProcessLineage

} // namespace sallowmere
