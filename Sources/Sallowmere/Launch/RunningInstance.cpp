// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/RunningInstance.h"

#include <filesystem>
#include <system_error>

namespace sallowmere {

namespace {

QString lockPath(const std::string& home) {
    const std::string directory = home + "/.config/sallowmere";
    std::error_code ignored;
    std::filesystem::create_directories(directory, ignored);
    return QString::fromStdString(directory + "/panel.lock");
}

} // namespace

RunningInstance::RunningInstance(const std::string& home) : lock_(lockPath(home)) {
    // It belongs to a process, however old it is.
    lock_.setStaleLockTime(0);
    isAnother_ = !lock_.tryLock() && lock_.error() == QLockFile::LockFailedError;
}

} // namespace sallowmere
