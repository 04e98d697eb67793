// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// One channel, with 1 as the highest amplitude.
using Samples = std::vector<float>;

constexpr std::size_t samplesPerSecond = 44'100;

/// The sum of the squares.
double energy(const Samples& sound);

/// How alike two sounds are in how their loudness changes: 1 for the same at whatever volume, 0 for
/// two that are never heard at the same time.
double likeness(const Samples& left, const Samples& right);

/// A PulseAudio server of the test's own, whose loudspeaker nobody hears.
class SoundServer {
public:
    /// Where it listens.
    static std::string address(const TemporaryHome& home);

    explicit SoundServer(const TemporaryHome& home);

    /// From now on it answers nobody, until it goes on.
    void stop() const;
    void goOn() const;

    /// What a program that controls it prints.
    std::string control(const std::vector<std::string>& arguments) const;

private:
    const TemporaryHome& home_;
    std::unique_ptr<ChildProcess> server_;
};

/// Hears what the loudspeaker of a server plays, from now on.
class Recording {
public:
    explicit Recording(const TemporaryHome& home);

    /// Whether the next sound has begun.
    bool isHeard();

    /// Waits for the next sound and for its end, which is when nothing is heard for a while. Empty
    /// when none comes.
    Samples next();

private:
    /// Adds what was recorded meanwhile.
    void read();

    std::string file_;
    std::unique_ptr<ChildProcess> recorder_;
    Samples heard_;
    /// Samples that were looked at.
    std::size_t done_ = 0;
};

} // namespace sallowmere
