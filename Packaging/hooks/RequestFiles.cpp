// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "RequestFiles.h"

#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Sallowmere/Text/Paths.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere::RequestFiles {

namespace {

constexpr std::string_view markerPrefix = ".asked-";
constexpr std::string_view unfinishedPrefix = ".new-";

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-'
           || c == '_';
}

/// Makes what is missing of the directory below the home directory, which has to be there.
void makeDirectory(const std::string& path, const std::string& home) {
    std::size_t end = home.size();
    do {
        end = path.find('/', end + 1);
        mkdir(path.substr(0, end).c_str(), S_IRWXU);
    } while (end != std::string::npos);
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(descriptor, content.data(), content.size());
        if (count <= 0) {
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Adds a file to the notification directory, or replaces it.
void put(const std::string& name, std::string_view content, const std::string& home) {
    const std::string directory = NotificationWatcher::directory(home);
    makeDirectory(directory, home);
    std::string unfinished = joinPath(directory, std::string(unfinishedPrefix) + "XXXXXX");
    const int descriptor = mkostemp(unfinished.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    const bool isWritten = writeAll(descriptor, content);
    const bool isClosed = close(descriptor) == 0;
    if (!isWritten || !isClosed
        || rename(unfinished.c_str(), joinPath(directory, name).c_str()) != 0) {
        unlink(unfinished.c_str());
    }
}

void putRequest(const HookEvent& event, const std::string& home) {
    const std::string unique = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
    put(nameOf(event.sessionId) + '-' + unique + ".json", content(event), home);
}

std::string markerPath(const QString& sessionId, const std::string& home) {
    return joinPath(NotificationWatcher::directory(home),
                    std::string(markerPrefix) + nameOf(sessionId));
}

bool isFresh(const std::string& path, const FileSystem& files, Timestamp now) {
    const auto status = files.status(path, Links::keep);
    // A clock that was set back would make it count for long.
    return status && std::abs(secondsBetween(status->modified, now)) < markerCounts;
}

std::vector<PermissionRequest> pendingOf(const QString& sessionId, const FileSystem& files,
                                         const std::string& home, Timestamp now) {
    std::vector<PermissionRequest> requests = NotificationWatcher::pending(files, home, now);
    std::erase_if(requests, [&](const auto& request) { return request.sessionId != sessionId; });
    return requests;
}

/// Removes what calls and sessions left behind that were killed.
void tidy(const FileSystem& files, const std::string& home, Timestamp now) {
    std::vector<std::string> paths;
    const std::string directory = NotificationWatcher::directory(home);
    files.list(directory, [&](std::string_view name, EntryType) {
        if (name.starts_with(markerPrefix) || name.starts_with(unfinishedPrefix)) {
            paths.push_back(joinPath(directory, name));
        }
    });
    for (const std::string& path : paths) {
        if (!isFresh(path, files, now)) {
            files.removeFile(path);
        }
    }
}

void settle(const QString& sessionId, const FileSystem& files, const std::string& home,
            Timestamp now) {
    for (const PermissionRequest& request : pendingOf(sessionId, files, home, now)) {
        NotificationWatcher::dismiss(request, files, home);
    }
    files.removeFile(markerPath(sessionId, home));
    tidy(files, home, now);
}

} // namespace

void apply(const HookEvent& event, const FileSystem& files, const std::string& home,
           Timestamp now) {
    const QString& sessionId = event.sessionId;
    switch (event.kind) {
    case HookEvent::Kind::permission:
        putRequest(event, home);
        break;
    case HookEvent::Kind::question:
        put(std::string(markerPrefix) + nameOf(sessionId), {}, home);
        break;
    case HookEvent::Kind::reminder:
        if (!isFresh(markerPath(sessionId, home), files, now)
            && pendingOf(sessionId, files, home, now).empty()) {
            putRequest(event, home);
        }
        break;
    case HookEvent::Kind::settled:
        settle(sessionId, files, home, now);
        break;
    }
}

std::string content(const HookEvent& event) {
    QJsonObject notification{{QStringLiteral("session_id"), event.sessionId}};
    if (!event.message.isEmpty()) {
        notification.insert(QStringLiteral("message"), event.message);
    }
    return QJsonDocument(notification).toJson(QJsonDocument::Compact).toStdString() + '\n';
}

std::string nameOf(const QString& sessionId) {
    constexpr std::size_t longest = 64;
    std::string id = sessionId.toStdString();
    if (!id.empty() && id.size() <= longest && std::all_of(id.begin(), id.end(), isPlain)) {
        return id;
    }
    return QCryptographicHash::hash(QByteArray::fromStdString(id), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

} // namespace sallowmere::RequestFiles
