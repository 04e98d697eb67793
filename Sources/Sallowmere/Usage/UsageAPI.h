// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/HttpClient.h"
#include "Platform/Keychain.h"
#include "Sallowmere/Usage/OfficialUsage.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace sallowmere {

/// Asks the service behind the assistant for the user's own usage figures, with the access token
/// that the assistant keeps. Credentials are read, and sent to the service, and nothing else.
/// Every failure ends in no figures; after a refusal nobody is asked for a while.
class UsageAPI {
public:
    using Completion = std::function<void(std::optional<OfficialUsage>)>;

    /// Where the figures are asked for. The host is chosen when the program is built.
    static std::string endpoint();

    /// Seconds without a question after the service refused the token.
    static constexpr double blockAfterRefusal = 600;

    /// `keychain` and `files` must outlive the object. `home` is the user's home directory.
    UsageAPI(Keychain& keychain, const FileSystem& files, Clock clock, std::string home,
             std::string url = endpoint());

    /// `timeout` in seconds. `completion` is called once: before this returns when nothing is
    /// sent, else on the session's thread, also after this object has gone. One thread at a time;
    /// waits for the user when the keychain is locked.
    void fetch(double timeout, HttpClient& session, Completion completion);

    /// The figures of a response; absent when there are none in it.
    static std::optional<OfficialUsage> parse(std::string_view data, Timestamp now);

    /// The assistant's access token, from the keychain or else from the assistant's credentials
    /// file; absent when there is none or it has expired by `now`. A keychain that refuses makes
    /// this the last time that anybody is asked. One thread at a time.
    std::optional<std::string> accessToken(Timestamp now);

private:
    class Block;

    std::optional<std::string> keychainData();

    Keychain& keychain_;
    const FileSystem& files_;
    Clock clock_;
    std::string home_;
    std::string url_;
    /// Shared with the requests under way.
    std::shared_ptr<Block> block_;
};

} // namespace sallowmere
