// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/HttpClient.h"
#include "Platform/Keychain.h"

#include <string>
#include <utility>
#include <vector>

namespace sallowmere {

/// A web client whose answers the test gives, when it likes.
class FakeHttpClient : public HttpClient {
public:
    struct Asked {
        HttpRequest request;
        Completion completion;
    };

    std::vector<Asked> asked;

    void get(HttpRequest request, Completion completion) override {
        asked.push_back({std::move(request), std::move(completion)});
    }
};

/// A keychain with one item at most.
class FakeKeychain : public Keychain {
public:
    Item item;
    /// The services that were asked for.
    std::vector<std::string> asked;

    Item genericPassword(std::string_view service) override {
        asked.emplace_back(service);
        return item;
    }
};

} // namespace sallowmere
