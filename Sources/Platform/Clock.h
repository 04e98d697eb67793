// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <functional>

namespace sallowmere {

/// Reads the present moment. Handed to whoever needs it, so that tests choose the time.
using Clock = std::function<Timestamp()>;

} // namespace sallowmere
