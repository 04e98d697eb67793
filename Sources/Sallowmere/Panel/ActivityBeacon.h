// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace sallowmere {

/// The dot in the collapsed bar that sums up all sessions.
struct ActivityBeacon {
    enum class Color { cyan, green, blue };

    /// Sessions at work.
    std::int64_t working = 0;
    /// Sessions and requests that wait for the user.
    std::int64_t waiting = 0;
    /// Recent completions.
    std::int64_t completed = 0;

    bool isShown() const { return working >= 1 || waiting >= 1 || completed >= 1; }
    Color color() const;
    /// It breathes until something was completed.
    bool isBreathing() const { return completed == 0; }
    QString toolTip() const;

    bool operator==(const ActivityBeacon&) const = default;
};

} // namespace sallowmere
