// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <optional>
#include <string_view>

namespace sallowmere {

/// Values of a transcript's lines.
namespace JSONLine {

/// Whether a time may carry a fraction of a second.
enum class Fraction { allowed, refused };

/// A time as `YYYY-MM-DDTHH:MM:SS`, a fraction of one to three digits, and `Z`, `+HH:MM` or
/// `-HH:MM`. Absent for anything else: other spellings, dates that do not exist, a second 60.
std::optional<Timestamp> date(std::optional<std::string_view> value,
                              Fraction fraction = Fraction::allowed);

} // namespace JSONLine

} // namespace sallowmere
