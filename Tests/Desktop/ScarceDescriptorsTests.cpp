// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/Daemon.h"
#include "Desktop/KeychainTest.h"
#include "Platform/Desktop/CanberraSounds.h"
#include "Platform/Desktop/SecretServiceKeychain.h"
#include "System/ScarceDescriptors.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(ScarceDescriptorsOnADesktop, LeaveTheKeyringUnread) {
    const TemporaryHome home;
    const PrivateBus bus(home);
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", bus.address());
    const auto service =
        startDaemon(home, {SALLOWMERE_SECRET_SERVICE_STAND_IN, bus.address(), "open"});
    ASSERT_EQ(service->readLine(), "ready");
    SecretServiceKeychain keychain;
    // As few as it may be, and more than a few of them are taken at once.
    for (const std::size_t left : {0U, 1U, 2U, 3U, 4U, 6U, 8U, 12U}) {
        const ScarceDescriptors scarce(left);
        EXPECT_EQ(keychain.genericPassword("item"), missing) << left;
    }
    for (const std::size_t left : {16U, 17U, 20U}) {
        const ScarceDescriptors scarce(left);
        EXPECT_EQ(keychain.genericPassword("item"), found("the open one")) << left;
    }
}

} // namespace
} // namespace sallowmere
