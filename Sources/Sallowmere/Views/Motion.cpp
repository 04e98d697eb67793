// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/Motion.h"

namespace sallowmere {

void Motion::setWanted(bool wanted) {
    if (isWanted_ != wanted) {
        isWanted_ = wanted;
        emit isWantedChanged();
    }
}

} // namespace sallowmere
