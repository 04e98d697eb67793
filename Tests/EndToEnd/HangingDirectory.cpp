// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// hanging-directory DIRECTORY PIDFILE PROGRAM [ARGUMENT...]
// Runs a program for which another one serves the directory, as it is and only to be read, by FUSE.
// Its process id is in the file; as long as it is stopped the directory hangs.
#define FUSE_USE_VERSION 31
#include "EndToEnd/MountNamespace.h"

#include <fuse.h>
#include <fuse_lowlevel.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the directory is without the file system that is mounted on it.
int served = -1;

/// Whether to stop with the next question taken and not answered.
volatile std::sig_atomic_t stopsWhenAsked = 0;

void stopWhenAsked(int /*signal*/) {
    stopsWhenAsked = 1;
}

/// As `openat` wants it.
const char* relative(const char* path) {
    return path[1] == '\0' ? "." : path + 1;
}

int answer(long result) {
    return result < 0 ? -errno : static_cast<int>(result);
}

int getAttributes(const char* path, struct stat* status, fuse_file_info* /*file*/) {
    if (stopsWhenAsked != 0) {
        stopsWhenAsked = 0;
        raise(SIGSTOP);
    }
    return answer(fstatat(served, relative(path), status, AT_SYMLINK_NOFOLLOW));
}

int openFile(const char* path, fuse_file_info* file) {
    const int descriptor = openat(served, relative(path), O_RDONLY | O_CLOEXEC);
    file->fh = static_cast<std::uint64_t>(descriptor);
    return descriptor < 0 ? -errno : 0;
}

int readFile(const char* /*path*/, char* buffer, std::size_t size, off_t offset,
             fuse_file_info* file) {
    return answer(pread(static_cast<int>(file->fh), buffer, size, offset));
}

int closeFile(const char* /*path*/, fuse_file_info* file) {
    return answer(close(static_cast<int>(file->fh)));
}

int readDirectory(const char* path, void* buffer, fuse_fill_dir_t fill, off_t /*offset*/,
                  fuse_file_info* /*file*/, fuse_readdir_flags /*flags*/) {
    const int descriptor = openat(served, relative(path), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* stream = descriptor < 0 ? nullptr : fdopendir(descriptor);
    if (stream == nullptr) {
        return -errno;
    }
    while (const dirent* entry = readdir(stream)) {
        struct stat status {};
        status.st_mode = static_cast<mode_t>(DTTOIF(entry->d_type));
        fill(buffer, entry->d_name, &status, 0, fuse_fill_dir_flags{});
    }
    return answer(closedir(stream));
}

fuse_operations operations() {
    fuse_operations all{};
    all.getattr = getAttributes;
    all.open = openFile;
    all.read = readFile;
    all.release = closeFile;
    all.readdir = readDirectory;
    return all;
}

/// Mounts the file system and has a child answer for it.
void serve(const char* directory, const char* pidFile) {
    served = open(directory, O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (served < 0) {
        throw std::system_error(errno, std::generic_category(), directory);
    }
    std::array<char*, 2> name{const_cast<char*>("hanging-directory"), nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(1, name.data());
    const fuse_operations all = operations();
    fuse* system = fuse_new(&arguments, &all, sizeof all, nullptr);
    if (system == nullptr || fuse_mount(system, directory) != 0) {
        throw std::runtime_error("FUSE cannot be mounted here: it takes /dev/fuse and the right to"
                                 " mount");
    }
    const pid_t server = fork();
    if (server == 0) {
        std::signal(SIGUSR1, stopWhenAsked);
        _exit(fuse_loop(system));
    }
    std::ofstream(pidFile) << server;
    close(fuse_session_fd(fuse_get_session(system)));
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: hanging-directory DIRECTORY PIDFILE PROGRAM [ARGUMENT...]\n", stderr);
        return 2;
    }
    try {
        sallowmere::enterMountNamespace();
        serve(argv[1], argv[2]);
        sallowmere::becomeProgram(argv + 3);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hanging-directory: %s\n", error.what());
    }
    return 1;
}
