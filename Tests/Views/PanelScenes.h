// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/PanelStage.h"

#include <functional>
#include <string>
#include <vector>

namespace sallowmere {

/// One state of the panel, by the name of its picture.
struct PanelScene {
    std::string name;
    bool hasNotch;
    std::function<void(PanelStage&)> set;

    static std::vector<PanelScene> all();
};

} // namespace sallowmere
