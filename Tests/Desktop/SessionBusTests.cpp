// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/Daemon.h"
#include "Desktop/KeychainTest.h"
#include "Desktop/SilentSocket.h"
#include "Platform/Desktop/SecretServiceKeychain.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace sallowmere {
namespace {

Keychain::Item read(std::chrono::milliseconds patience = std::chrono::minutes(1)) {
    SecretServiceKeychain keychain(patience);
    testing::internal::CaptureStderr();
    Keychain::Item item = keychain.genericPassword("Some credentials");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    return item;
}

/// A window system, but no session bus, and a program that would start one.
class NoSessionBus : public testing::Test {
protected:
    NoSessionBus() {
        const std::string launcher =
            home.write("bin/dbus-launch", "#!/bin/sh\n: > \"" + launched() + "\"\n");
        std::filesystem::permissions(launcher, std::filesystem::perms::owner_all);
        home.makeDirectory("run");
    }

    std::string launched() const { return home / "launched"; }

    TemporaryHome home;
    EnvironmentVariable display{"DISPLAY", ":99"};
    EnvironmentVariable search{"PATH", home / "bin"};
    EnvironmentVariable emptyRuntime{"XDG_RUNTIME_DIR", home / "run"};
    EnvironmentVariable noAddress{"DBUS_SESSION_BUS_ADDRESS", std::nullopt};
};

TEST_F(NoSessionBus, HasNoItemsAndNoneIsStarted) {
    EXPECT_EQ(read(), missing);
    EXPECT_FALSE(std::filesystem::exists(launched()));
}

TEST_F(NoSessionBus, IsNotStartedEvenWhereTheAddressSaysSo) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "autolaunch:");
    EXPECT_EQ(read(), missing);
    EXPECT_FALSE(std::filesystem::exists(launched()));
}

TEST_F(NoSessionBus, IsNotStartedWhereThereIsNoRuntimeDirectory) {
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(read(), missing);
    EXPECT_FALSE(std::filesystem::exists(launched()));
}

TEST_F(NoSessionBus, IsNotStartedWhereSomethingElseHasItsName) {
    home.write("run/bus", "no socket");
    EXPECT_EQ(read(), missing);
    EXPECT_FALSE(std::filesystem::exists(launched()));
}

TEST_F(NoSessionBus, HasNoItemsWhereTheAddressIsOfNone) {
    for (const std::string& text :
         {std::string(), std::string("nonsense"), "unix:path=" + home / "run/none"}) {
        const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", text);
        EXPECT_EQ(read(), missing) << text;
    }
    EXPECT_FALSE(std::filesystem::exists(launched()));
}

TEST_F(NoSessionBus, IsNotWaitedForWhenItDoesNotAnswer) {
    const SilentSocket socket(home / "run/silent");
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS",
                                      "unix:path=" + home / "run/silent");
    EXPECT_EQ(read(std::chrono::milliseconds(100)), missing);
}

TEST(SessionBus, HasNoItemsWhereNobodyKeepsSecrets) {
    const TemporaryHome home;
    const PrivateBus bus(home);
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", bus.address());
    EXPECT_EQ(read(), missing);
}

TEST(SessionBus, IsFoundInTheRuntimeDirectory) {
    const TemporaryHome home;
    const PrivateBus bus(home);
    const auto service =
        startDaemon(home, {SALLOWMERE_SECRET_SERVICE_STAND_IN, bus.address(), "open"});
    ASSERT_EQ(service->readLine(), "ready");
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", home / "run");
    EXPECT_EQ(read(), found("the open one"));
}

} // namespace
} // namespace sallowmere
