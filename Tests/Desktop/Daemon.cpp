// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/Daemon.h"

namespace sallowmere {

std::unique_ptr<ChildProcess> startDaemon(const TemporaryHome& home,
                                          const std::vector<std::string>& arguments,
                                          const std::vector<std::string>& variables) {
    Command command{
        "/bin/sh",
        {"sh", "-c", R"(exec "$@" 2>>"$HOME/complaints")", "sh"},
        {"PATH=/usr/bin:/bin", "HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home / "run"},
        home.path()};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.environment.insert(command.environment.end(), variables.begin(), variables.end());
    return std::make_unique<ChildProcess>(command);
}

} // namespace sallowmere
