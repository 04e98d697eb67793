// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Table.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace sallowmere {

Spread spreadOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return {values.front(), values[values.size() / 2], values.back()};
}

void printRow(const char* what, const char* target, const char* result, ...) {
    std::printf("| %s | ", what);
    std::va_list numbers;
    va_start(numbers, result);
    std::vprintf(result, numbers);
    va_end(numbers);
    std::printf(" | %s |\n", target);
    std::fflush(stdout);
}

void printTargetHead(const char* title) {
    std::printf("\n| %s | | target |\n| --- | --- | --- |\n", title);
}

} // namespace sallowmere
