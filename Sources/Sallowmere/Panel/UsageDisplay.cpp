// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/UsageDisplay.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Usage/TimeFormat.h"

#include <optional>

namespace sallowmere::UsageDisplay {

namespace {

constexpr double nearlyUsedUp = 0.8;
constexpr double halfUsed = 0.5;

/// The used share, which may lie beyond 1.
std::optional<double> fraction(const UsageWindow& window) {
    if (window.officialFraction) {
        return window.officialFraction;
    }
    return window.limit > 0 ? std::optional(window.weightedTokens / window.limit) : std::nullopt;
}

QString part(const QString& name, const UsageWindow& window, bool official) {
    QString text = name + u' ' + TimeFormat::tokens(window.weightedTokens);
    return official ? text : text + QStringLiteral(" / ") + TimeFormat::tokens(window.limit);
}

} // namespace

PercentColor percentColor(const UsageWindow& window, bool hasTint) {
    const std::optional<double> used = fraction(window);
    if (used && *used >= nearlyUsedUp) {
        return PercentColor::red;
    }
    if (hasTint) {
        return PercentColor::tint;
    }
    return used && *used >= halfUsed ? PercentColor::orange : PercentColor::green;
}

QString footerText(const UsageSnapshot& usage) {
    const QString separator = QStringLiteral("  ·  ");
    const bool official = usage.fiveHour.officialFraction && usage.weekly.officialFraction;
    QString text = part(QStringLiteral("5h"), usage.fiveHour, official) + separator
                   + part(QStringLiteral("7d"), usage.weekly, official);
    if (usage.weeklyFable) {
        text +=
            separator
            + part(firstCharacters(usage.scopedLabel, 1).toString(), *usage.weeklyFable, official);
    }
    return text + (official ? QStringLiteral(" wtok") : QStringLiteral(" wtok · est"));
}

} // namespace sallowmere::UsageDisplay
