// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace sallowmere {

/// The short sounds that come with the desktop.
class SystemSounds {
public:
    SystemSounds() = default;
    SystemSounds(const SystemSounds&) = delete;
    SystemSounds& operator=(const SystemSounds&) = delete;
    virtual ~SystemSounds() = default;

    /// Starts the sound called "Glass", "Ping" or "Submarine" and returns at once. `volume` is
    /// linear, from 0, silent, to 1, as loud as the sound is. Silence when there is no such sound
    /// or nothing to play it with. Main thread.
    virtual void play(std::string_view name, float volume) = 0;
};

} // namespace sallowmere
