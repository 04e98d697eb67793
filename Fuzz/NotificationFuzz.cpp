// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a notification. Whatever stands in it, it is a request just when it says whose, and
// no beginning of it is another request.
#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Sallowmere/Text/Json.h"
#include "Support/FakeFileSystem.h"
#include "Support/Input.h"
#include "Support/Require.h"

namespace sallowmere::fuzz {
namespace {

const std::string home = "/home/user";
const std::string path = NotificationWatcher::directory(home) + "/a.json";
constexpr Timestamp now = std::chrono::sys_days{std::chrono::November / 21 / 2026};

std::optional<PermissionRequest> requestIn(const std::string& content,
                                           std::size_t readLimit = SIZE_MAX) {
    FakeFileSystem files;
    files.addFile(path, content, now).readLimit = readLimit;
    const auto requests = NotificationWatcher::pending(files, home, now);
    require(requests.size() <= 1, "a file is one request at most");
    require(files.removed().empty(), "nothing young is removed");
    return requests.empty() ? std::nullopt : std::optional(requests.front());
}

/// What the file says, by the rules alone.
std::optional<PermissionRequest> expectedOf(const std::string& content) {
    JsonReader reader;
    const JsonObject object = reader.object(content).value_or(JsonObject());
    const std::optional<QString> sessionId = object.text("session_id");
    if (!sessionId) {
        return std::nullopt;
    }
    return PermissionRequest{QStringLiteral("a.json"), *sessionId,
                             object.text("message").value_or("Permission requested"), now};
}

void requireNoRequestBefore(const std::string& content) {
    const std::size_t end = content.find_last_not_of(" \t\r\n");
    for (std::size_t length = end == std::string::npos ? 0 : end; length > 0; length /= 2) {
        require(!requestIn(content.substr(0, length)), "half a request is none");
    }
}

void requireExpiry(const std::string& content) {
    FakeFileSystem files;
    files.addFile(path, content, now);
    const Timestamp later = now + std::chrono::seconds(90);
    require(NotificationWatcher::pending(files, home, later).empty(), "what is old is no request");
    require(files.removed() == std::vector{path}, "what is old is removed");
    require(files.bytesRead() == 0, "what is old is not read");
}

void requireNotificationRules(const std::string& content) {
    const std::optional<PermissionRequest> request = requestIn(content);
    require(request == expectedOf(content), "a request is what its file says");
    require(requestIn(content, 1 + content.size() % 7) == request, "small reads say the same");
    if (request) {
        requireNoRequestBefore(content);
    }
    requireExpiry(content);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireNotificationRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
