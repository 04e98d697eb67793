// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Keychain.h"

#include <chrono>
#include <memory>
#include <string_view>

namespace sallowmere {

/// The freedesktop Secret Service: GNOME's and KDE's keyrings, password managers.
///
/// An item that is missing costs a search and nothing else. There is no keychain where there is no
/// session bus or none of its programs keeps secrets; a bus is never started for it, a service that
/// the bus knows how to start is.
class SecretServiceKeychain : public Keychain {
public:
    /// `patience` is how long the service may take to answer what it answers without the user.
    /// Longer, and the item counts as missing, or as refused once it is known to be locked.
    explicit SecretServiceKeychain(std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~SecretServiceKeychain() override;

    Item genericPassword(std::string_view service) override;

    /// Ends a wait for the service or the user, who need not answer any more; every later read
    /// fails at once. Any thread, also during a read.
    void stopWaiting();

private:
    class End;

    std::chrono::milliseconds patience_;
    std::unique_ptr<End> end_;
};

} // namespace sallowmere
