// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// Runs a program to its end and returns all that it printed. `program` is a full path and
/// `arguments` what comes after its name. It has this program's environment and directory, no
/// input, and nobody reads what it complains about.
///
/// Absent when it cannot be started, and when it has not printed all and ended within `patience`
/// seconds, at the end of which it is killed; how it ends by itself does not matter. Any thread.
std::optional<std::string> outputOf(const std::string& program,
                                    const std::vector<std::string>& arguments, double patience);

} // namespace sallowmere
