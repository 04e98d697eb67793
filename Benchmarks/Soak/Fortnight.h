// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Soak/SimulatedTime.h"
#include "Soak/SoakedEngine.h"
#include "Soak/World.h"

#include <cstdint>
#include <filesystem>
#include <random>

namespace sallowmere {

/// Days of work with the engine: sessions, processes, requests for permission, the official
/// service, a user and the clock do what they do, decided by the seed alone.
class Fortnight {
public:
    Fortnight(const std::filesystem::path& home, std::uint64_t seed);

    /// One refresh.
    void step();

    /// All sessions are gone, and for so long that the engine has no reason left to know of them.
    void forget();

    SoakedEngine& engine() { return engine_; }
    const World& world() const { return world_; }
    const SimulatedTime& time() const { return time_; }
    std::uint64_t permissions() const { return permissions_; }

private:
    void moveProcesses();
    void askPermission();
    void changeService();
    void useThePanel();
    void useSession();
    void turnClock();
    bool happens(double everySeconds);
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }

    std::filesystem::path home_;
    std::mt19937_64 random_;
    SimulatedTime time_;
    World world_;
    SoakedEngine engine_;
    std::uint64_t steps_ = 0;
    std::int32_t lastProcess_ = 100;
    std::uint64_t permissions_ = 0;
};

} // namespace sallowmere
