// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace sallowmere {

/// Where the desktop keeps passwords. Only read.
class Keychain {
public:
    struct Item {
        enum class Outcome {
            found,
            /// No such item, or no keychain.
            missing,
            /// There is one, and it may not be read: it is locked and was not unlocked.
            refused,
        };

        Outcome outcome = Outcome::missing;
        /// The secret; only of one that was found.
        std::string secret;
    };

    Keychain() = default;
    Keychain(const Keychain&) = delete;
    Keychain& operator=(const Keychain&) = delete;
    virtual ~Keychain() = default;

    /// The item with that attribute "service". A locked one makes the keychain ask the user to
    /// unlock it, and this waits for the answer; one that is missing never does. Nothing throws;
    /// any one thread.
    virtual Item genericPassword(std::string_view service) = 0;
};

} // namespace sallowmere
