// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookInput.h"
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxUser.h"
#include "RequestFiles.h"

#include <csignal>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

using namespace sallowmere;

namespace {

constexpr std::chrono::milliseconds patience(1'000);

void handleCall() {
    // Nobody calls a hook by hand, and to read a terminal from the background is to be stopped.
    if (isatty(STDIN_FILENO) != 0) {
        return;
    }
    const std::optional<HookEvent> event = readHookEvent(readInput(STDIN_FILENO, patience));
    const std::string home = homeDirectory();
    if (event && home.starts_with('/')) {
        RequestFiles::apply(*event, LinuxFileSystem(), home, linuxClock()());
    }
}

} // namespace

/// Whatever happens, the assistant must not be disturbed: it takes output for an answer and shows
/// complaints to its user.
int main() {
    // A mask may forbid the user too what nobody else can do with these files anyway.
    umask(S_IRWXG | S_IRWXO);
    // Beyond a limit on the size of files, a write fails instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        handleCall();
    } catch (...) {
        return EXIT_SUCCESS;
    }
    return EXIT_SUCCESS;
}
