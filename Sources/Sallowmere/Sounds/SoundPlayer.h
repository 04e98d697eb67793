// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/SystemSounds.h"

#include <map>
#include <string>
#include <string_view>

namespace sallowmere {

/// Plays short cues, each at most every two seconds, so that a burst of changes makes one sound.
/// Main thread.
class SoundPlayer {
public:
    /// Seconds for which a sound is not repeated. Each name counts for itself.
    static constexpr double quietTime = 2.0;

    /// `sounds` must outlive the player.
    SoundPlayer(SystemSounds& sounds, Clock clock);

    /// Starts a sound unless it was asked for and let through in the last two seconds; whether it
    /// could then be heard does not matter. `volume` is linear, 0 to 1.
    void play(std::string_view name, float volume);

private:
    SystemSounds& sounds_;
    Clock clock_;
    std::map<std::string, Timestamp, std::less<>> lastPlayed_;
};

} // namespace sallowmere
