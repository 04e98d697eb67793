// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

namespace sallowmere {

/// What new files of this process, and of those it starts, are kept from, until destroyed.
class NewFileMask {
public:
    explicit NewFileMask(mode_t mask) : former_(umask(mask)) {}
    NewFileMask(const NewFileMask&) = delete;
    NewFileMask& operator=(const NewFileMask&) = delete;
    ~NewFileMask() { umask(former_); }

private:
    mode_t former_;
};

} // namespace sallowmere
