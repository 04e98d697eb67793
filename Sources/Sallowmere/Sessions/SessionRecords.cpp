// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionRecords.h"

#include <array>

namespace sallowmere {

QString rawValue(SessionStatus status) {
    switch (status) {
    case SessionStatus::working:
        return QStringLiteral("working");
    case SessionStatus::waiting:
        return QStringLiteral("waiting");
    case SessionStatus::done:
        return QStringLiteral("done");
    case SessionStatus::idle:
        return QStringLiteral("idle");
    }
    Q_UNREACHABLE();
}

std::optional<SessionStatus> sessionStatus(QStringView rawValue) {
    constexpr std::array<SessionStatus, 4> all{SessionStatus::working, SessionStatus::waiting,
                                               SessionStatus::done, SessionStatus::idle};
    for (const SessionStatus status : all) {
        if (sallowmere::rawValue(status) == rawValue) {
            return status;
        }
    }
    return std::nullopt;
}

} // namespace sallowmere
