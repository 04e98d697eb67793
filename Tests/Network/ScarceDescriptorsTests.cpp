// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "NetworkTest.h"

#include "System/ScarceDescriptors.h"

namespace sallowmere {
namespace {

using ScarceDescriptorsOnTheNet = NetworkTest;

TEST_F(ScarceDescriptorsOnTheNet, AreAnswerEnough) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors itself to look at objects";
#endif
    for (const std::size_t left : {0U, 1U, 2U, 3U, 5U, 8U, 16U, 24U}) {
        const ScarceDescriptors scarce(left);
        const Heard heard = hearServer();
        EXPECT_EQ(heard.completions, 1) << left;
        EXPECT_EQ(heard.status(), 0) << left;
    }
    server().answerWith(answer(200, "body"));
    // The server needs some as well.
    const ScarceDescriptors enough(40);
    EXPECT_EQ(hearServer().status(), 200);
}

} // namespace
} // namespace sallowmere
