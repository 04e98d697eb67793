// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sallowmere {

struct HttpRequest {
    /// Absolute, https.
    std::string url;
    /// What is sent beside the headers that HTTP needs. One with a line break in it is never sent.
    std::vector<std::pair<std::string, std::string>> headers;
    /// Seconds from the start until the answer must be there whole.
    double timeout = 60;
};

struct HttpResponse {
    int status = 0;
    std::string body;
};

/// Asks web servers. Nothing throws.
class HttpClient {
public:
    using Completion = std::function<void(std::optional<HttpResponse>)>;

    HttpClient() = default;
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;
    virtual ~HttpClient() = default;

    /// Sends a GET request without a body and returns at once; any thread. `completion` is called
    /// once, on a thread of the client's own: with whatever the server itself answered, redirects
    /// included, which are not followed; or with nothing when it gave no whole answer (no
    /// connection, a certificate that is not trusted, too slow, a body beyond 64 MiB, no file
    /// descriptors left to ask with). It is dropped uncalled when the client is destroyed first.
    virtual void get(HttpRequest request, Completion completion) = 0;
};

} // namespace sallowmere
