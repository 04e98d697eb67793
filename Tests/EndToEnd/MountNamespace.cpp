// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/MountNamespace.h"

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace sallowmere {

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void write(const char* path, const std::string& text) {
    std::ofstream stream(path);
    stream << text << std::flush;
    if (!stream) {
        fail(path);
    }
}

std::string toItself(unsigned id) {
    return std::to_string(id) + ' ' + std::to_string(id) + " 1\n";
}

} // namespace

void enterMountNamespace() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) {
        fail("no mount namespace of its own");
    }
    if (user != 0) {
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", toItself(user));
        write("/proc/self/gid_map", toItself(group));
    }
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        fail("cannot keep mounts to itself");
    }
}

void becomeProgram(char** arguments) {
    execv(arguments[0], arguments);
    fail(arguments[0]);
}

} // namespace sallowmere
