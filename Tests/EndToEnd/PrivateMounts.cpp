// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// private-mounts [--full DIRECTORY | --instead FILE PLACE]... PROGRAM [ARGUMENT...]
// Runs a program that finds other things in some places than everybody else does: a directory with
// all that is in it on a disk of its own on which nothing is free but what a file "ballast" there
// takes, or a file instead of the one at a place.
#include "EndToEnd/MountNamespace.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr const char* size = "size=1m";

int checked(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

/// Writes a file until no more fits on its disk.
void fillDisk(const std::string& path) {
    const int file =
        checked(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), path.c_str());
    const std::array<char, 4'096> page{};
    while (write(file, page.data(), page.size()) > 0) {
    }
    if (errno != ENOSPC) {
        checked(-1, path.c_str());
    }
    close(file);
}

void putOnFullDisk(const std::string& directory) {
    namespace fs = std::filesystem;
    const int before = checked(open(directory.c_str(), O_PATH | O_CLOEXEC), directory.c_str());
    checked(mount("tmpfs", directory.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, size), "tmpfs");
    fs::copy("/proc/self/fd/" + std::to_string(before) + "/.", directory,
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    // Copying keeps no modes of directories.
    fs::permissions(directory + "/run", fs::perms::owner_all);
    fillDisk(directory + "/ballast");
}

/// Takes what belongs to one option and returns the rest.
char** apply(char** words) {
    if (std::string_view(words[0]) == "--full") {
        putOnFullDisk(words[1]);
        return words + 2;
    }
    checked(mount(words[1], words[2], nullptr, MS_BIND, nullptr), words[2]);
    return words + 3;
}

} // namespace

int main(int /*argc*/, char** argv) {
    try {
        sallowmere::enterMountNamespace();
        char** words = argv + 1;
        while (std::string_view(words[0]).starts_with("--")) {
            words = apply(words);
        }
        sallowmere::becomeProgram(words);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "private-mounts: %s\n", error.what());
    }
    return 1;
}
