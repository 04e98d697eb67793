// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/GermanLocale.h"

#include "System/ChildProcess.h"

namespace sallowmere {

GermanLocale::GermanLocale() {
    const std::string target = directory_ / "de_DE.UTF-8";
    isThere_ = run({"/usr/bin/localedef",
                    {"localedef", "--no-archive", "-i", "de_DE", "-f", "UTF-8", target},
                    {},
                    {}})
                   .exitStatus
               == 0;
}

} // namespace sallowmere
