// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/TimeFormat.h"

#include "Sallowmere/Text/Numbers.h"

#include <algorithm>
#include <cstdint>

namespace sallowmere::TimeFormat {

QString remaining(double seconds) {
    const std::int64_t minutes = std::max<std::int64_t>(static_cast<std::int64_t>(seconds), 0) / 60;
    if (minutes < 60) {
        return QStringLiteral("%1m").arg(minutes);
    }
    return QStringLiteral("%1h%2m").arg(minutes / 60).arg(minutes % 60);
}

QString age(double seconds) {
    const auto whole = static_cast<std::int64_t>(seconds);
    if (whole < 60) {
        return QStringLiteral("now");
    }
    if (whole < 3'600) {
        return QStringLiteral("%1m").arg(whole / 60);
    }
    if (whole < 86'400) {
        return QStringLiteral("%1h").arg(whole / 3'600);
    }
    return QStringLiteral("%1d").arg(whole / 86'400);
}

QString tokens(double count) {
    if (count >= 1e9) {
        return fixed(count / 1e9, 1) + u'B';
    }
    if (count >= 1e6) {
        return fixed(count / 1e6, 1) + u'M';
    }
    if (count >= 1e3) {
        return fixed(count / 1e3, 0) + u'K';
    }
    return fixed(count, 0);
}

} // namespace sallowmere::TimeFormat
