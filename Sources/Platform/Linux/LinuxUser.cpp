// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxUser.h"

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace sallowmere {

namespace {

std::string homeFromUserDatabase() {
    const passwd* entry = getpwuid(getuid());
    return entry == nullptr || entry->pw_dir == nullptr ? std::string() : entry->pw_dir;
}

} // namespace

std::string homeDirectory() {
    const char* variable = std::getenv("HOME");
    std::string home = variable == nullptr || *variable != '/' ? homeFromUserDatabase() : variable;
    while (home.size() > 1 && home.ends_with('/')) {
        home.pop_back();
    }
    return home;
}

} // namespace sallowmere
