// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Writes a home directory full of generated transcripts: make-corpus HOME FILES BYTES

#include "Corpus.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: make-corpus HOME FILES BYTES\n", stderr);
        return 2;
    }
    try {
        sallowmere::Corpus().write(std::filesystem::path(argv[1]) / ".claude/projects",
                                   std::stoi(argv[2]), std::stoull(argv[3]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make-corpus: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
