// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Certificates.h"
#include "HttpsServer.h"
#include "Platform/Qt/EventLoopQueue.h"
#include "Platform/Qt/QtHttpClient.h"
#include "System/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace sallowmere {

/// Runs the thread's event loop until something holds; false when it takes unreasonably long.
bool waitUntil(const std::function<bool()>& holds);

/// A client on a thread of its own, and a server that it trusts on the test's.
class NetworkTest : public testing::Test {
protected:
    /// Longer than any test waits.
    static constexpr double noTimeout = 600;
    /// For what is to time out, however fast the machine is.
    static constexpr double shortTimeout = 0.2;
    /// Goes to the server with every question, and nowhere else.
    static constexpr const char* secret = "the-secret-token";

    /// What was heard of a question.
    struct Heard {
        int completions = 0;
        std::optional<HttpResponse> response;
        std::thread::id thread;

        int status() const { return response ? response->status : 0; }
    };

    void SetUp() override;
    void TearDown() override;

    /// The server's, which the client trusts. One serves all tests.
    static const Certificate& certificate();
    HttpsServer& server() { return *server_; }
    QtHttpClient& client() { return *client_; }
    void destroyClient() { client_.reset(); }

    static HttpRequest requestFor(const HttpsServer& server, double timeout = noTimeout);

    std::shared_ptr<Heard> ask(HttpRequest request) { return ask(client(), std::move(request)); }
    std::shared_ptr<Heard> ask(HttpClient& client, HttpRequest request);
    /// The same, waiting for what comes.
    Heard hear(HttpRequest request) { return hear(client(), std::move(request)); }
    Heard hear(HttpClient& client, HttpRequest request);
    /// The server's own answer to one request for its root.
    Heard hearServer(double timeout = noTimeout) { return hear(requestFor(server(), timeout)); }

    /// Runs on the test's own thread; to be posted to from any.
    WorkQueue& queue() { return *queue_; }

private:
    /// The machine's own proxies are none of the tests'.
    std::vector<std::unique_ptr<EnvironmentVariable>> environment_;
    std::optional<EventLoopQueue> queue_;
    std::optional<HttpsServer> server_;
    std::optional<QtHttpClient> client_;
};

} // namespace sallowmere
