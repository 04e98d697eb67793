// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

/// Ends a test that this machine lacks something for: a failure where a merge is decided, so that
/// nothing goes untested there unseen, and a skip on anybody's own machine.
#define MISSING_FOR_TEST(what)                                                                     \
    if (std::getenv("CI") != nullptr) {                                                            \
        FAIL() << (what);                                                                          \
    } else {                                                                                       \
        GTEST_SKIP() << (what);                                                                    \
    }
