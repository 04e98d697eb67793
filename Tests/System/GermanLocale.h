// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/TemporaryHome.h"

#include <string>

namespace sallowmere {

/// The locale de_DE.UTF-8, with its decimal comma, on machines that did not install it.
class GermanLocale {
public:
    GermanLocale();

    /// False when its sources are missing too.
    bool isThere() const { return isThere_; }
    /// For the environment variable LOCPATH.
    const std::string& path() const { return directory_.path(); }

private:
    TemporaryHome directory_;
    bool isThere_ = false;
};

} // namespace sallowmere
