// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace sallowmere {

/// A median, the least and the most.
struct Spread {
    double least = 0;
    double median = 0;
    double most = 0;
};

/// Of at least one value.
Spread spreadOf(std::vector<double> values);

/// A row of a table with a target beside it; its numbers as `printf` writes them.
[[gnu::format(printf, 3, 4)]] void printRow(const char* what, const char* target,
                                            const char* result, ...);

/// The head of a table of such rows.
void printTargetHead(const char* title);

} // namespace sallowmere
