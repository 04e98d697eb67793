// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sallowmere {

/// Texts for spans of time and token counts; the same in every locale.
/// Seconds must be finite and within the range of a 64-bit integer.
namespace TimeFormat {

/// Time until a reset: "0m", "59m", "1h0m", "26h40m". Negative seconds count as none.
QString remaining(double seconds);

/// Time since an event: "now" below a minute, then "5m", "3h", "2d".
QString age(double seconds);

/// A token count: "999", "2K", "1.0M", "2.3B". Rounds half to even, without moving on to the next
/// unit after rounding: 999,999 gives "1000K".
QString tokens(double count);

} // namespace TimeFormat

} // namespace sallowmere
