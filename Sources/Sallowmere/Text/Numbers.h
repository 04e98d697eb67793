// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sallowmere {

/// As printf's %.Nf prints it in the C locale: the exact binary value, rounded half to even.
QString fixed(double value, int decimals);

} // namespace sallowmere
