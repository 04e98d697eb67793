// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Permissions/NotificationWatcher.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Text/Paths.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace sallowmere::NotificationWatcher {

namespace {

struct Entry {
    std::string name;
    std::string path;
};

std::vector<Entry> notificationFiles(const FileSystem& files, const std::string& home) {
    std::vector<Entry> entries;
    const std::string parent = directory(home);
    files.list(parent, [&](std::string_view name, EntryType) {
        if (hasExtension(name, "json")) {
            entries.push_back({std::string(name), joinPath(parent, name)});
        }
    });
    return entries;
}

std::optional<std::string> content(const FileSystem& files, const std::string& path) {
    const std::unique_ptr<ReadableFile> file = files.open(path);
    if (!file || file->size().value_or(0) > largestFile) {
        return std::nullopt;
    }
    // Some files do not tell their size, or grow.
    return readToEnd(*file, 0, largestFile);
}

std::optional<PermissionRequest> read(const FileSystem& files, const Entry& entry,
                                      Timestamp receivedAt, JsonReader& reader) {
    const std::optional<std::string> text = content(files, entry.path);
    const auto notification = text ? reader.object(*text) : std::nullopt;
    const auto sessionId = notification ? notification->text("session_id") : std::nullopt;
    if (!sessionId) {
        return std::nullopt;
    }
    return PermissionRequest{
        decodeUtf8(entry.name), *sessionId,
        notification->text("message").value_or(QStringLiteral("Permission requested")), receivedAt};
}

} // namespace

std::string directory(const std::string& home) {
    return joinPath(home, ".config/sallowmere/notifications");
}

std::vector<PermissionRequest> pending(const FileSystem& files, const std::string& home,
                                       Timestamp now) {
    std::vector<PermissionRequest> requests;
    JsonReader reader;
    for (const Entry& entry : notificationFiles(files, home)) {
        const std::optional<FileStatus> status = files.status(entry.path, Links::keep);
        const Timestamp receivedAt = status ? status->modified : now;
        if (secondsBetween(receivedAt, now) >= expiresAfter) {
            files.removeFile(entry.path);
        } else if (auto request = read(files, entry, receivedAt, reader)) {
            requests.push_back(*std::move(request));
        }
    }
    std::stable_sort(requests.begin(), requests.end(), [](const auto& left, const auto& right) {
        return left.receivedAt > right.receivedAt;
    });
    return requests;
}

void dismiss(const PermissionRequest& request, const FileSystem& files, const std::string& home) {
    // A name that is no UTF-8 has lost bytes on its way into the id, so it is looked for.
    if (request.id.contains(QChar::ReplacementCharacter)) {
        for (const Entry& entry : notificationFiles(files, home)) {
            if (decodeUtf8(entry.name) == request.id) {
                files.removeFile(entry.path);
            }
        }
    } else if (!request.id.contains(u'/')) {
        files.removeFile(joinPath(directory(home), request.id.toStdString()));
    }
}

} // namespace sallowmere::NotificationWatcher
