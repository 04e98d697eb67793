// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// Runs inside a terminal and writes each byte that comes from it to a FIFO:
//   key-recorder FIFO NAME
// One line each: NAME, a blank, and "ready PID WINDOW" at first, the byte in decimal later.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 3) {
        return EXIT_FAILURE;
    }
    const int fifo = open(argv[1], O_WRONLY | O_CLOEXEC);
    const auto tell = [&](const std::string& what) {
        const std::string line = std::string(argv[2]) + ' ' + what + '\n';
        return write(fifo, line.data(), line.size()) == static_cast<ssize_t>(line.size());
    };
    termios mode{};
    if (fifo < 0 || tcgetattr(STDIN_FILENO, &mode) != 0) {
        return EXIT_FAILURE;
    }
    cfmakeraw(&mode);
    const char* const window = std::getenv("WINDOWID");
    if (tcsetattr(STDIN_FILENO, TCSAFLUSH, &mode) != 0
        || !tell("ready " + std::to_string(getpid()) + ' ' + (window != nullptr ? window : "0"))) {
        return EXIT_FAILURE;
    }
    unsigned char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) == 1 && tell(std::to_string(byte))) {
    }
    return EXIT_SUCCESS;
}
