// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Numbers.h"

#include <array>
#include <charconv>
#include <limits>

namespace sallowmere {

QString fixed(double value, int decimals) {
    std::array<char, std::numeric_limits<double>::max_exponent10 + 16> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::fixed, decimals);
    return QString::fromLatin1(text.data(), result.ptr - text.data());
}

} // namespace sallowmere
