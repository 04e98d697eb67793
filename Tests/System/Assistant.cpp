// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Stands in for the assistant: says its process id and runs until its input ends.
#include <cstdio>

#include <unistd.h>

int main() {
    std::printf("%d\n", static_cast<int>(getpid()));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
