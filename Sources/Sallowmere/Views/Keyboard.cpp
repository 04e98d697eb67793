// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/Keyboard.h"

namespace sallowmere {

void Keyboard::setHeld(bool held) {
    if (isHeld_ != held) {
        isHeld_ = held;
        emit isHeldChanged();
    }
}

void Keyboard::take() {
    emit wanted();
}

} // namespace sallowmere
