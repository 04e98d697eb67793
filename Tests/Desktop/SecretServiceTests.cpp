// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/Daemon.h"
#include "Desktop/KeychainTest.h"
#include "Platform/Desktop/SecretServiceKeychain.h"

#include <gmock/gmock.h>

#include <future>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::chrono::milliseconds littlePatience{100};

/// A desktop with a Secret Service of the test's own.
class SecretService : public testing::Test {
protected:
    void start(const std::vector<std::string>& words) {
        std::vector<std::string> arguments{SALLOWMERE_SECRET_SERVICE_STAND_IN, bus.address()};
        arguments.insert(arguments.end(), words.begin(), words.end());
        service = startDaemon(home, arguments);
        ASSERT_EQ(service->readLine(), "ready");
    }

    Keychain::Item read() { return keychain.genericPassword("Some credentials"); }

    /// What it was asked for that was not read yet; ends it.
    std::vector<std::string> calls() {
        service->finish();
        std::vector<std::string> lines;
        for (std::string line = service->readLine(); !line.empty(); line = service->readLine()) {
            lines.push_back(line);
        }
        return lines;
    }

    void waitForCall(const std::string& call) {
        for (std::string line; line != call;) {
            line = service->readLine();
            ASSERT_NE(line, "");
        }
    }

    TemporaryHome home;
    PrivateBus bus{home};
    EnvironmentVariable address{"DBUS_SESSION_BUS_ADDRESS", bus.address()};
    std::unique_ptr<ChildProcess> service;
    SecretServiceKeychain keychain{std::chrono::minutes(1)};
};

constexpr const char* search = "({'service': 'Some credentials'},)";

TEST_F(SecretService, IsOnlySearchedForWhatItDoesNotHave) {
    start({});
    EXPECT_EQ(read(), missing);
    EXPECT_THAT(calls(), ElementsAre("SearchItems", search));
}

TEST_F(SecretService, GivesAnItemThatIsNotLockedWithoutUnlocking) {
    start({"open"});
    EXPECT_EQ(read(), found("the open one"));
    EXPECT_THAT(calls(),
                ElementsAre("SearchItems", search, "OpenSession", "OpenSession", "GetSecret"));
}

TEST_F(SecretService, GivesTheOneThatIsNotLockedIfThereAreTwo) {
    start({"locked", "open"});
    EXPECT_EQ(read(), found("the open one"));
    EXPECT_THAT(calls(),
                ElementsAre("SearchItems", search, "OpenSession", "OpenSession", "GetSecret"));
}

TEST_F(SecretService, AsksTheUserBeforeItGivesALockedItem) {
    start({"locked", "accepts"});
    EXPECT_EQ(read(), found("the locked one"));
    EXPECT_THAT(calls(), ElementsAre("SearchItems", search, "Unlock", "Prompt", "OpenSession",
                                     "OpenSession", "GetSecret"));
}

TEST_F(SecretService, MayUnlockWithoutAsking) {
    start({"locked", "at-once"});
    EXPECT_EQ(read(), found("the locked one"));
}

TEST_F(SecretService, RefusesWhatTheUserDoesNotUnlock) {
    start({"locked", "dismisses"});
    EXPECT_EQ(read(), refused);
    EXPECT_THAT(calls(), ElementsAre("SearchItems", search, "Unlock", "Prompt"));
}

TEST_F(SecretService, RefusesWhatItDoesNotUnlock) {
    start({"locked"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesWhatStaysLockedAfterAll) {
    start({"locked", "pretends"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesWhenItFailsToUnlock) {
    start({"locked", "fails:Unlock:org.freedesktop.DBus.Error.Failed"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesWhenItFailsToAsk) {
    start({"locked", "accepts", "fails:Prompt:org.freedesktop.DBus.Error.Failed"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesWhenItEndsInsteadOfAsking) {
    start({"locked", "dies"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesAnItemThatItDeniesAccessTo) {
    start({"open", "fails:GetSecret:org.freedesktop.DBus.Error.AccessDenied"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, RefusesAnItemThatWasLockedMeanwhile) {
    start({"open", "fails:GetSecret:org.freedesktop.Secret.Error.IsLocked"});
    EXPECT_EQ(read(), refused);
}

TEST_F(SecretService, HasNoItemThatWasRemovedMeanwhile) {
    start({"open", "fails:GetSecret:org.freedesktop.Secret.Error.NoSuchObject"});
    EXPECT_EQ(read(), missing);
}

TEST_F(SecretService, HasNoItemWhenItFailsToSearch) {
    start({"open", "fails:SearchItems:org.freedesktop.DBus.Error.AccessDenied"});
    EXPECT_EQ(read(), missing);
}

TEST_F(SecretService, HasNoItemWhenItDoesNotAnswer) {
    for (const char* method : {"SearchItems", "OpenSession", "GetSecret"}) {
        start({"open", std::string("silent:") + method});
        SecretServiceKeychain hasty(littlePatience);
        EXPECT_EQ(hasty.genericPassword("Some credentials"), missing) << method;
    }
}

TEST_F(SecretService, RefusesWhenItDoesNotAnswerTheRequestToUnlock) {
    start({"locked", "silent:Unlock"});
    SecretServiceKeychain usual;
    EXPECT_EQ(usual.genericPassword("Some credentials"), refused);
}

TEST_F(SecretService, HasNoItemWhenItDoesNotAnswerAfterUnlocking) {
    start({"locked", "accepts", "silent:GetSecret"});
    SecretServiceKeychain usual;
    EXPECT_EQ(usual.genericPassword("Some credentials"), missing);
}

TEST_F(SecretService, HasNoItemWhoseNameIsNoText) {
    start({"open"});
    testing::internal::CaptureStderr();
    EXPECT_EQ(keychain.genericPassword("\xff"), missing);
    EXPECT_EQ(keychain.genericPassword(std::string_view("Some\0credentials", 16)), missing);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SecretService, MayTakeLongerWhenTheUserIsAsked) {
    start({"locked", "waits"});
    SecretServiceKeychain usual;
    auto item =
        std::async(std::launch::async, [&] { return usual.genericPassword("Some credentials"); });
    waitForCall("Prompt");
    // Takes as long as the other would have taken if it were not for the user.
    SecretServiceKeychain other;
    EXPECT_EQ(other.genericPassword("Some credentials"), missing);
    EXPECT_EQ(item.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    usual.stopWaiting();
    EXPECT_EQ(item.get(), refused);
}

TEST_F(SecretService, TakesTheQuestionBackWhenNobodyWaitsAnyMore) {
    start({"locked", "waits"});
    auto item = std::async(std::launch::async, [this] { return read(); });
    waitForCall("Prompt");
    keychain.stopWaiting();
    EXPECT_EQ(item.get(), refused);
    waitForCall("Dismiss");
}

TEST_F(SecretService, IsNotAskedAnyMoreOnceNobodyWaits) {
    start({"open"});
    keychain.stopWaiting();
    EXPECT_EQ(read(), missing);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SecretService, RefusesWhenTheBusEndsDuringTheQuestion) {
    start({"locked", "waits"});
    auto item = std::async(std::launch::async, [this] { return read(); });
    waitForCall("Prompt");
    bus.end();
    EXPECT_EQ(item.get(), refused);
    EXPECT_EQ(read(), missing);
}

} // namespace
} // namespace sallowmere
