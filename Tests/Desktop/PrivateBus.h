// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace sallowmere {

/// A message bus of the test's own, with nothing of the user's session on it.
class PrivateBus {
public:
    /// The bus can start the program when `name` is asked for, if there is one.
    explicit PrivateBus(const TemporaryHome& home, const std::string& name = {},
                        const std::string& program = {});

    const std::string& address() const { return address_; }

    /// Ends it as a logout does.
    void end() { daemon_.reset(); }

private:
    std::string address_;
    std::unique_ptr<ChildProcess> daemon_;
};

/// What a test does on a bus by itself.
class BusClient {
public:
    explicit BusClient(const std::string& address);
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;
    ~BusClient();

    bool hasOwner(const std::string& name) const;

    using Reply = std::unique_ptr<GVariant, void (*)(GVariant*)>;
    /// Calls a method, with the parameters in the text format of `GVariant`; throws when it fails.
    Reply call(const std::string& name, const std::string& path, const std::string& interfaceName,
               const std::string& method, const std::string& parameters) const;

private:
    GDBusConnection* connection_;
};

} // namespace sallowmere
