// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/SystemSounds.h"

#include <memory>
#include <string_view>

namespace sallowmere {

class LinuxWorkQueue;

/// The sounds of the desktop's sound theme, played by the PulseAudio server or what stands in for
/// it:
///
/// | name        | sound of the theme    |
/// | ----------- | --------------------- |
/// | "Glass"     | `complete`            |
/// | "Ping"      | `message-new-instant` |
/// | "Submarine" | `dialog-warning`      |
///
/// The server is looked for when a sound is played, on a thread of its own: one that starts later
/// or again is found. While one does not answer each sound waits for it only once.
class CanberraSounds : public SystemSounds {
public:
    CanberraSounds();
    /// Cuts off what plays. Waits at most a second for a server that does not answer; the thread
    /// that talks to it then goes on by itself until the server is given up.
    ~CanberraSounds() override;

    void play(std::string_view name, float volume) override;

private:
    class Player;

    std::shared_ptr<Player> player_;
    std::unique_ptr<LinuxWorkQueue> queue_;
};

} // namespace sallowmere
