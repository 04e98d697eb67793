// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <algorithm>
#include <cmath>

namespace sallowmere {

int UsageWindow::percent() const {
    const double share = officialFraction.value_or(limit > 0 ? weightedTokens / limit : 0);
    // Counts come out of files that anybody may have written: below zero and no number at all are
    // shown as nothing used.
    return share > 0 ? static_cast<int>(std::lround(std::min(share, 1.0) * 100)) : 0;
}

UsageWindow UsageWindow::adopting(const std::optional<OfficialUsage::Limit>& official,
                                  Timestamp now) const {
    if (!official) {
        return *this;
    }
    UsageWindow window = *this;
    if (official->resetsAt) {
        window.resetsIn = std::max(secondsBetween(now, *official->resetsAt), 0.0);
    }
    window.officialFraction = official->fraction;
    return window;
}

UsageSnapshot UsageSnapshot::applying(const std::optional<OfficialUsage>& official,
                                      Timestamp now) const {
    if (!official || secondsBetween(official->fetchedAt, now) >= officialFiguresExpireAfter) {
        return *this;
    }
    UsageSnapshot merged = *this;
    if (official->scoped) {
        merged.weeklyFable = weeklyFable.value_or(weekly).adopting(official->scoped, now);
    } else if (official->weekly) {
        merged.weeklyFable.reset();
    }
    if (official->scopedLabel && !official->scopedLabel->isEmpty()) {
        merged.scopedLabel = *official->scopedLabel;
    }
    merged.fiveHour = fiveHour.adopting(official->session, now);
    merged.weekly = weekly.adopting(official->weekly, now);
    return merged;
}

} // namespace sallowmere
