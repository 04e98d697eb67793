// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/Daemon.h"
#include "Desktop/KeychainTest.h"
#include "Platform/Desktop/SecretServiceKeychain.h"
#include "Support/Missing.h"

#include <gtest/gtest.h>

#include <thread>

#include <unistd.h>

namespace sallowmere {
namespace {

constexpr const char* keyringProgram = "/usr/bin/gnome-keyring-daemon";
constexpr const char* loginCollection = "/org/freedesktop/secrets/collection/login";

std::string bytesText(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += (text.empty() ? "" : ",") + std::to_string(static_cast<unsigned char>(byte));
    }
    return "@ay [" + text + ']';
}

/// A desktop with the keyring of GNOME, whose password is "mellon".
class GnomeKeyring : public testing::Test {
protected:
    void SetUp() override {
        if (access(keyringProgram, X_OK) != 0) {
            MISSING_FOR_TEST("gnome-keyring-daemon is not installed");
        }
        keyring = startDaemon(home,
                              {"sh", "-c", R"(printf mellon | exec "$@")", "sh", keyringProgram,
                               "--foreground", "--components=secrets", "--unlock"},
                              {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
        ASSERT_TRUE(comesTrue([this] { return client.hasOwner(secretService); }));
    }

    BusClient::Reply callService(const std::string& method, const std::string& parameters) const {
        return client.call(secretService, "/org/freedesktop/secrets",
                           "org.freedesktop.Secret.Service", method, parameters);
    }

    void store(const std::string& attributes, const std::string& secret) const {
        const BusClient::Reply opened = callService("OpenSession", "('plain', <''>)");
        const char* session = nullptr;
        g_variant_get_child(opened.get(), 1, "&o", &session);
        client.call(secretService, loginCollection, "org.freedesktop.Secret.Collection",
                    "CreateItem",
                    "(@a{sv} {'org.freedesktop.Secret.Item.Label': <'an item'>,"
                    " 'org.freedesktop.Secret.Item.Attributes': <@a{ss} "
                        + attributes + ">}, (objectpath '" + session + "', @ay [], "
                        + bytesText(secret) + ", 'application/octet-stream'), false)");
    }

    void lock() const {
        callService("Lock", std::string("([objectpath '") + loginCollection + "'],)");
    }

    /// A program that asks the user, who types this password or dismisses the question.
    std::unique_ptr<ChildProcess> startPrompter(const std::vector<std::string>& password = {}) {
        std::vector<std::string> arguments{SALLOWMERE_PROMPTER_STAND_IN, bus.address()};
        arguments.insert(arguments.end(), password.begin(), password.end());
        auto prompter = startDaemon(home, arguments);
        EXPECT_EQ(prompter->readLine(), "ready");
        return prompter;
    }

    TemporaryHome home;
    PrivateBus bus{home};
    EnvironmentVariable address{"DBUS_SESSION_BUS_ADDRESS", bus.address()};
    BusClient client{bus.address()};
    std::unique_ptr<ChildProcess> keyring;
    SecretServiceKeychain keychain{std::chrono::minutes(1)};
};

/// How often the user was asked for a password.
int questions(ChildProcess& prompter) {
    prompter.finish();
    int count = 0;
    for (std::string line = prompter.readLine(); !line.empty(); line = prompter.readLine()) {
        count += line == "PerformPrompt" ? 1 : 0;
    }
    return count;
}

TEST_F(GnomeKeyring, GivesTheItemOfThatService) {
    store("{'service': 'Other credentials'}", "another's");
    store("{'service': 'Some credentials'}", R"({"token": "t"})");
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found(R"({"token": "t"})"));
}

TEST_F(GnomeKeyring, GivesItWhateverElseTheItemIsSaidToBe) {
    store("{'service': 'Some credentials', 'account': 'me', 'xdg:schema': 'org.example.Own'}",
          "secret");
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found("secret"));
}

TEST_F(GnomeKeyring, HasNoItemOfAnotherService) {
    store("{'service': 'Some credentials'}", "secret");
    EXPECT_EQ(keychain.genericPassword("Some"), missing);
    EXPECT_EQ(keychain.genericPassword("some credentials"), missing);
    EXPECT_EQ(keychain.genericPassword(""), missing);
}

TEST_F(GnomeKeyring, GivesSecretsThatAreNoText) {
    const std::string secret("\0\xff\n\0", 4);
    store("{'service': 'Some credentials'}", secret);
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found(secret));
}

TEST_F(GnomeKeyring, GivesAnEmptySecret) {
    store("{'service': 'Some credentials'}", "");
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found(""));
}

TEST_F(GnomeKeyring, GivesALongSecret) {
    const std::string secret(300'000, 's');
    store("{'service': 'Some credentials'}", secret);
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found(secret));
}

TEST_F(GnomeKeyring, IsReadAgainEachTimeAndFromAnyThread) {
    store("{'service': 'Some credentials'}", "first");
    Keychain::Item item;
    std::thread([&] { item = keychain.genericPassword("Some credentials"); }).join();
    EXPECT_EQ(item, found("first"));
    store("{'service': 'Other credentials'}", "second");
    std::thread([&] { item = keychain.genericPassword("Other credentials"); }).join();
    EXPECT_EQ(item, found("second"));
}

TEST_F(GnomeKeyring, AsksTheUserToUnlockIt) {
    store("{'service': 'Some credentials'}", "secret");
    lock();
    const auto prompter = startPrompter({"mellon"});
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found("secret"));
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found("secret"));
    EXPECT_EQ(questions(*prompter), 1);
}

TEST_F(GnomeKeyring, IsRefusedWhenTheUserDismissesTheQuestion) {
    store("{'service': 'Some credentials'}", "secret");
    lock();
    const auto prompter = startPrompter();
    EXPECT_EQ(keychain.genericPassword("Some credentials"), refused);
    EXPECT_EQ(questions(*prompter), 1);
}

TEST_F(GnomeKeyring, IsRefusedWhenTheUserGivesUpAfterAWrongPassword) {
    store("{'service': 'Some credentials'}", "secret");
    lock();
    const auto prompter = startPrompter({"melon"});
    EXPECT_EQ(keychain.genericPassword("Some credentials"), refused);
    EXPECT_EQ(questions(*prompter), 2);
}

TEST_F(GnomeKeyring, IsRefusedWhereNothingCanAskTheUser) {
    store("{'service': 'Some credentials'}", "secret");
    lock();
    EXPECT_EQ(keychain.genericPassword("Some credentials"), refused);
}

TEST_F(GnomeKeyring, AsksNothingForAnItemThatALockedKeyringDoesNotHave) {
    store("{'service': 'Other credentials'}", "secret");
    lock();
    const auto prompter = startPrompter({"mellon"});
    EXPECT_EQ(keychain.genericPassword("Some credentials"), missing);
    EXPECT_EQ(questions(*prompter), 0);
}

TEST_F(GnomeKeyring, IsStartedByTheBusWhenItDoesNotRunYet) {
    store("{'service': 'Some credentials'}", "secret");
    keyring.reset();
    const PrivateBus newBus(home, secretService,
                            std::string(keyringProgram) + " --foreground --components=secrets");
    const EnvironmentVariable newAddress("DBUS_SESSION_BUS_ADDRESS", newBus.address());
    const auto prompter =
        startDaemon(home, {SALLOWMERE_PROMPTER_STAND_IN, newBus.address(), "mellon"});
    EXPECT_EQ(prompter->readLine(), "ready");
    EXPECT_EQ(keychain.genericPassword("Some credentials"), found("secret"));
}

} // namespace
} // namespace sallowmere
