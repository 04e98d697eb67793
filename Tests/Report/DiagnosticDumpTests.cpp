// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/DiagnosticDump.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(DiagnosticDump, WithoutSessionsEndsAfterTheWeeklyLine) {
    DiagnosticDump::Model model;
    model.usage.fiveHour.limit = 50'000'000;
    model.usage.weekly.limit = 350'000'000;
    EXPECT_EQ(DiagnosticDump::report(model), "claude binary: NOT FOUND\n"
                                             "5h: 0 / 50000000 wtok (0%)\n"
                                             "7d: 0 / 350000000 wtok (0%)\n");
}

} // namespace
} // namespace sallowmere
