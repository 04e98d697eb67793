// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Platform/Timestamp.h"
#include "Sallowmere/Permissions/PermissionRequest.h"

#include <string>
#include <vector>

namespace sallowmere {

/// Reads the permission requests that a hook of the assistant's configuration drops, one JSON
/// object with "session_id" and "message" per file `*.json`, into a directory. The directory is
/// all the state there is. Nothing here fails visibly; any thread.
namespace NotificationWatcher {

/// Seconds after which a request is given up and its file removed.
inline constexpr double expiresAfter = 90;

/// Bytes; a larger file is no notification of ours and is not read.
inline constexpr std::uint64_t largestFile = 1'048'576;

/// `~/.config/sallowmere/notifications`; never created here.
std::string directory(const std::string& home);

/// The pending requests, newest first. Removes files that are 90 s old or older, dated by their
/// last change; one that cannot be read or is no notification (yet) is passed over until then.
std::vector<PermissionRequest> pending(const FileSystem& files, const std::string& home,
                                       Timestamp now);

/// Removes the request's file, if it is still there; never anything outside the directory.
void dismiss(const PermissionRequest& request, const FileSystem& files, const std::string& home);

} // namespace NotificationWatcher

} // namespace sallowmere
