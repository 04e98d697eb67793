// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Settings/Settings.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(Settings, DefaultsKnowTheTranscriptsDirectory) {
    EXPECT_EQ(Settings::defaults("/home/u").claudeRoot, "/home/u/.claude/projects");
}

} // namespace
} // namespace sallowmere
