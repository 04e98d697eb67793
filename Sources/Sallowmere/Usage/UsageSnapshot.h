// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Usage/OfficialUsage.h"

#include <QString>

#include <optional>

namespace sallowmere {

/// Usage of one allowance over one span of time.
struct UsageWindow {
    /// Weighted tokens used.
    double weightedTokens = 0;
    /// The allowance in weighted tokens.
    double limit = 1;
    /// Seconds until the window resets; absent when unknown.
    std::optional<double> resetsIn;
    /// The service's own used share, which then wins over the token counts.
    std::optional<double> officialFraction;

    /// Used share in whole percent, 0 to 100, halves rounded up.
    int percent() const;

    /// With the service's share and reset time; the token counts stay.
    UsageWindow adopting(const std::optional<OfficialUsage::Limit>& official, Timestamp now) const;

    bool operator==(const UsageWindow&) const = default;
};

/// Usage as last computed. The default one stands for "not computed yet".
struct UsageSnapshot {
    /// The current 5-hour block.
    UsageWindow fiveHour;
    /// The weekly window, all models.
    UsageWindow weekly;
    /// The weekly window of one model family, named by `scopedLabel`.
    std::optional<UsageWindow> weeklyFable;
    QString scopedLabel = QStringLiteral("Fable");
    Timestamp computedAt = distantPast;

    /// Seconds after which official figures are too old to be shown.
    static constexpr double officialFiguresExpireAfter = 900;

    /// With the service's figures laid over the computed ones, unless they are absent or stale.
    UsageSnapshot applying(const std::optional<OfficialUsage>& official, Timestamp now) const;

    bool operator==(const UsageSnapshot&) const = default;
};

} // namespace sallowmere
