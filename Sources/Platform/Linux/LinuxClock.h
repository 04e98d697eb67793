// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

namespace sallowmere {

/// The system's real-time clock.
Clock linuxClock();

} // namespace sallowmere
