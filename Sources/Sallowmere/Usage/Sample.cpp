// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/Sample.h"

#include <algorithm>
#include <array>

namespace sallowmere {

bool isFableFamily(std::string_view model) {
    constexpr std::array<std::string_view, 3> family{"fable", "mythos", "opus"};
    return std::any_of(family.begin(), family.end(), [model](std::string_view name) {
        return model.find(name) != std::string_view::npos;
    });
}

} // namespace sallowmere
