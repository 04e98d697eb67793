// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/TimeFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

namespace sallowmere::TimeFormat {

namespace {

/// As printf's %.Nf prints it in the C locale: the exact binary value, rounded half to even.
QString fixed(double value, int decimals) {
    std::array<char, std::numeric_limits<double>::max_exponent10 + 16> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::fixed, decimals);
    return QString::fromLatin1(text.data(), result.ptr - text.data());
}

} // namespace

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
