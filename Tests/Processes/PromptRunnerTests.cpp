// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/PromptRunner.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(PromptRunner, AsksWithThePromptBehindTheSeparator) {
    const QStringList expected{
        "-p", "--resume", "abc", "--fork-session", "--permission-mode", "bypassPermissions",
        "--", "-rf"};
    EXPECT_EQ(PromptRunner::buildArguments("-rf", "abc", "bypassPermissions"), expected);
}

} // namespace
} // namespace sallowmere
