// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/SpareDescriptors.h"
#include "System/ScarceDescriptors.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(SpareDescriptors, AreCounted) {
    for (const std::size_t left : {1U, 2U, 3U, 16U, 40U}) {
        const ScarceDescriptors scarce(left);
        EXPECT_TRUE(hasSpareDescriptors(left)) << left;
        EXPECT_FALSE(hasSpareDescriptors(left + 1)) << left;
    }
}

TEST(SpareDescriptors, AreNoneWhereNoFileCanBeOpened) {
    const ScarceDescriptors scarce(0);
    EXPECT_FALSE(hasSpareDescriptors(1));
}

} // namespace
} // namespace sallowmere
