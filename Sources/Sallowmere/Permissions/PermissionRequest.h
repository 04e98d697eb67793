// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <QString>

namespace sallowmere {

/// A permission that a session of the assistant asks its user for, identified by `id`.
struct PermissionRequest {
    /// Name of the file that announced it.
    QString id;
    /// `SessionInfo::sessionId` of the session that asks.
    QString sessionId;
    /// Shown to the user; whoever wrote the file chose it.
    QString message;
    Timestamp receivedAt{};

    bool operator==(const PermissionRequest&) const = default;
};

} // namespace sallowmere
