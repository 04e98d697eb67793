// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxFileSystem.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(LinuxFileSystem, DoesNotListWhatIsNoDirectory) {
    EXPECT_FALSE(LinuxFileSystem().list("", [](std::string_view, EntryType) {}));
    EXPECT_FALSE(LinuxFileSystem().list("/dev/null", [](std::string_view, EntryType) {}));
}

} // namespace
} // namespace sallowmere
