// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxUser.h"

#include "System/EnvironmentVariable.h"

#include "Support/Missing.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace sallowmere {
namespace {

TEST(HomeDirectory, IsWhatTheEnvironmentSaysWithoutTrailingSlashes) {
    struct Case {
        const char* variable;
        const char* home;
    };
    for (const Case& c : {Case{"/somewhere/else", "/somewhere/else"}, Case{"/a/", "/a"},
                          Case{"/a//", "/a"}, Case{"/", "/"}, Case{"///", "/"},
                          Case{"/h\xFF", "/h\xFF"}, Case{"/with blank ", "/with blank "}}) {
        const EnvironmentVariable variable("HOME", c.variable);
        EXPECT_EQ(homeDirectory(), c.home) << c.variable;
    }
}

TEST(HomeDirectory, FallsBackOnTheUserDatabase) {
    const passwd* entry = getpwuid(getuid());
    if (entry == nullptr) {
        MISSING_FOR_TEST("the user database does not know this user")
    }
    const std::string expected = entry->pw_dir;
    for (const std::optional<std::string>& value :
         {std::optional<std::string>(), {""}, {"relative"}, {"./relative"}, {"~"}}) {
        const EnvironmentVariable variable("HOME", value);
        EXPECT_EQ(homeDirectory(), expected);
    }
}

} // namespace
} // namespace sallowmere
