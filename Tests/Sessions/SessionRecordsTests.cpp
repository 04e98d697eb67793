// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionRecords.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(SessionStatus, IsBuiltFromItsWordAlone) {
    EXPECT_EQ(sessionStatus(u"waiting"), SessionStatus::waiting);
    EXPECT_EQ(sessionStatus(u"Waiting"), std::nullopt);
    EXPECT_EQ(sessionStatus(u""), std::nullopt);
}

} // namespace
} // namespace sallowmere
