// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

// Included once by a program that uses much of other libraries' threads (Qt's network, GLib,
// PulseAudio), which are not built for sanitizers. The functions are called by these names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)

#ifdef __SANITIZE_THREAD__
/// What the libraries read and write by way of the C library is seen, but not how they order their
/// threads.
extern "C" const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1";
}
#endif

#ifdef __SANITIZE_ADDRESS__
/// OpenSSL frees what it keeps for a thread when that thread ends. Qt does not wait for the very
/// end of its own threads, so that a program may end before them. Qt Quick keeps the pictures of
/// windows that have gone, in rings that nothing refers to (6.4).
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libcrypto.so\nleak:libQt6Gui.so\nleak:libQt6Quick.so";
}
#endif

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
