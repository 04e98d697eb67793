// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"

namespace sallowmere {

/// The displays that a test says there are.
struct FakeScreens : Screens {
    std::vector<Screen> screens;
    std::optional<Screen> mainScreen;

    std::vector<Screen> all() const override { return screens; }
    std::optional<Screen> main() const override { return mainScreen; }

    void change() const { announceChange(); }
};

} // namespace sallowmere
