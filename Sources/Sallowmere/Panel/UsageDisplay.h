// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Usage/UsageSnapshot.h"

#include <QString>

namespace sallowmere {

/// How usage figures are shown.
namespace UsageDisplay {

enum class PercentColor {
    /// Of the window's own, if it has one.
    tint,
    green,
    orange,
    red,
};

/// The colour of a window's percentage; `tint` is for windows that have a colour of their own.
PercentColor percentColor(const UsageWindow& window, bool hasTint);

/// The line at the foot of the panel.
QString footerText(const UsageSnapshot& usage);

} // namespace UsageDisplay

} // namespace sallowmere
