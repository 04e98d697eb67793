// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

namespace sallowmere {

/// The system's real-time clock.
Clock linuxClock();

/// One that nobody turns, for spans of time: it counts from the start of the system.
Clock linuxSteadyClock();

} // namespace sallowmere
