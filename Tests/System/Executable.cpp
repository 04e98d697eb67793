// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/Executable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace sallowmere {

Outcome runSallowmere(const std::string& home, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& variables) {
    Command command{
        SALLOWMERE_EXECUTABLE, {"sallowmere"}, {"PATH=/usr/bin:/bin", "HOME=" + home}, {}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.environment.insert(command.environment.end(), variables.begin(), variables.end());
    return run(command);
}

std::string dump(const std::string& home, const std::vector<std::string>& variables) {
    const Outcome outcome = runSallowmere(home, {"--dump"}, variables);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");
    return withoutForeignOrphans(outcome.output, home);
}

std::string withoutForeignOrphans(const std::string& report, const std::string& home) {
    std::istringstream lines(report);
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("orphan process: ") || line.find(home) != std::string::npos) {
            kept += line + '\n';
        }
    }
    return kept;
}

} // namespace sallowmere
