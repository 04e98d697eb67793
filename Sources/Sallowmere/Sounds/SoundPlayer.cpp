// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sounds/SoundPlayer.h"

#include <utility>

namespace sallowmere {

SoundPlayer::SoundPlayer(SystemSounds& sounds, Clock clock)
    : sounds_(sounds), clock_(std::move(clock)) {}

void SoundPlayer::play(std::string_view name, float volume) {
    const Timestamp now = clock_();
    const auto last = lastPlayed_.find(name);
    if (last != lastPlayed_.end() && secondsBetween(last->second, now) < quietTime) {
        return;
    }
    lastPlayed_.insert_or_assign(std::string(name), now);
    sounds_.play(name, volume);
}

} // namespace sallowmere
