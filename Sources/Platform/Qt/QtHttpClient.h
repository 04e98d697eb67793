// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/HttpClient.h"

#include <QSslConfiguration>

#include <memory>
#include <optional>

namespace sallowmere {

/// `HttpClient` by Qt's network access, on a thread of its own, which sleeps while nothing is
/// asked. Goes through the proxies that the desktop or the environment names, speaks HTTP/1.1,
/// unpacks compressed bodies, and keeps neither cookies nor a cache. A certificate must be valid
/// and the host's own. Needs a `QCoreApplication`.
class QtHttpClient : public HttpClient {
public:
    /// `tls` says whom to trust; absent, those that the system trusts, who are looked up when the
    /// first question is asked. Throws `std::system_error` when the system has no file descriptor
    /// left.
    explicit QtHttpClient(std::optional<QSslConfiguration> tls = std::nullopt);
    /// Gives up what is under way. Not from a completion.
    ~QtHttpClient() override;

    void get(HttpRequest request, Completion completion) override;

private:
    class NetworkThread;

    std::unique_ptr<NetworkThread> thread_;
};

} // namespace sallowmere
