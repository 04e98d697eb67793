// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/RunningInstance.h"

#include "Sallowmere/Settings/PrivateFiles.h"

namespace sallowmere {

namespace {

QString lockPath(const std::string& home) {
    const std::string directory = home + "/.config/sallowmere";
    PrivateFiles::createDirectories(directory);
    return QString::fromStdString(directory + "/panel.lock");
}

} // namespace

RunningInstance::RunningInstance(const std::string& home) : lock_(lockPath(home)) {
    // It belongs to a process, however old it is.
    lock_.setStaleLockTime(0);
    if (lock_.tryLock()) {
        PrivateFiles::makePrivate(lock_.fileName().toStdString());
    } else {
        isAnother_ = lock_.error() == QLockFile::LockFailedError;
    }
}

} // namespace sallowmere
