// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <QString>

#include <optional>

namespace sallowmere {

/// The service's own usage figures. Each is absent when the service did not give it.
struct OfficialUsage {
    struct Limit {
        /// Used share of the allowance, 0 to 1.
        double fraction = 0;
        std::optional<Timestamp> resetsAt;

        bool operator==(const Limit&) const = default;
    };

    /// The 5-hour session allowance.
    std::optional<Limit> session;
    /// The weekly allowance over all models.
    std::optional<Limit> weekly;
    /// A weekly allowance of one model family, and that family's name.
    std::optional<Limit> scoped;
    std::optional<QString> scopedLabel;
    /// When the response was parsed.
    Timestamp fetchedAt{};

    bool isEmpty() const { return !session && !weekly && !scoped; }

    bool operator==(const OfficialUsage&) const = default;
};

} // namespace sallowmere
