// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/JSONLine.h"

#include "Support/Times.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(JSONLine, ReadsTimesInAnyZone) {
    EXPECT_EQ(at("2025-06-02T09:14:05.5+02:00"), at("2025-06-02T07:14:05.500Z"));
}

} // namespace
} // namespace sallowmere
