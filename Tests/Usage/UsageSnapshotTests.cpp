// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(UsageWindow, PercentPrefersTheServicesShare) {
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, {}}).percent(), 60);
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, 0.425}).percent(), 43);
    EXPECT_EQ((UsageWindow{30'000'000, 50'000'000, {}, 1.7}).percent(), 100);
    EXPECT_EQ((UsageWindow{30'000'000, 0, {}, {}}).percent(), 0);
}

} // namespace
} // namespace sallowmere
