// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"

#include <string>
#include <vector>

namespace sallowmere {

/// Runs the program in an environment of HOME, a search path and these variables.
Outcome runSallowmere(const std::string& home, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& variables = {});

/// What `--dump` prints; fails the test unless it succeeds without a complaint.
std::string dump(const std::string& home, const std::vector<std::string>& variables = {});

/// The report without the orphan processes outside `home`: whoever runs the tests may be working
/// with an assistant.
std::string withoutForeignOrphans(const std::string& report, const std::string& home);

} // namespace sallowmere
