// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/SpareDescriptors.h"

#include <charconv>
#include <filesystem>
#include <system_error>

#include <sys/resource.h>

namespace sallowmere {

namespace {

/// How many numbers below `limit` open files have. A limit that was lowered closes none beyond it.
std::size_t takenBelow(rlim_t limit, std::error_code& error) {
    std::size_t taken = 0;
    std::filesystem::directory_iterator entry("/proc/self/fd", error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        const std::string name = entry->path().filename().native();
        rlim_t number = 0;
        std::from_chars(name.data(), name.data() + name.size(), number);
        taken += number < limit ? 1 : 0;
        entry.increment(error);
    }
    return taken;
}

} // namespace

bool hasSpareDescriptors(std::size_t count) {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return false;
    }
    std::error_code error;
    const std::size_t taken = takenBelow(limit.rlim_cur, error);
    // One is the listing's own, and free again by now.
    return !error && limit.rlim_cur - (taken - 1) >= count;
}

} // namespace sallowmere
