// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/Windows.h"
#include "X11/XClient.h"

#include <string>
#include <vector>

namespace sallowmere {

/// Every place and size that a window of the root's takes on from now on.
class WindowHistory {
public:
    WindowHistory(const std::string& display, xcb_window_t window);

    /// Those until now.
    std::vector<Box> read();

private:
    XClient watcher_;
    xcb_window_t window_;
};

} // namespace sallowmere
