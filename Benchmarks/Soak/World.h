// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Soak/Transcript.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace sallowmere {

/// What a world is like.
struct WorldPace {
    /// Sessions at a time.
    int sessions = 0;
    /// Of transcripts, all sessions together.
    double bytesPerSecond = 0;
    /// Bytes of a step, on the average: a message of the assistant's and what its tool gave.
    std::uint64_t stepBytes = 0;
    /// Bytes at which a transcript begins anew.
    std::uint64_t largest = 0;
    /// How often something befalls one of the sessions: it goes and another comes, it comes back
    /// shorter, its turn ends, it asks or plans.
    double goingsPerHour = 0;
    double shorteningsPerHour = 0;
    double turnsPerHour = 0;
};

/// What became of a world so far.
struct WorldCounts {
    std::uint64_t bytes = 0;
    std::uint64_t messages = 0;
    std::uint64_t begun = 0;
    std::uint64_t gone = 0;
    std::uint64_t shortened = 0;
};

/// Sessions that work, ask, end, vanish and begin below a home directory. What happens when is
/// decided by the seed and by the moments told; no clock is read. Throws when it cannot write.
class World {
public:
    World(std::filesystem::path home, std::uint64_t seed, WorldPace pace);

    /// Lets so many seconds pass, up to now.
    void step(Timestamp now, double seconds);

    const WorldCounts& counts() const { return counts_; }

private:
    struct Session {
        Transcript transcript;
        std::string cwd;
    };

    Session begin(Timestamp now);
    void grow(Timestamp now);
    void endTurn(Timestamp now);
    void shorten(Session& session, Timestamp now);
    void replace(Session& session, Timestamp now);
    bool happens(double perHour, double seconds);
    Session& anySession();
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
    std::string nextMessage();

    std::filesystem::path home_;
    std::uint64_t seed_;
    WorldPace pace_;
    std::mt19937_64 random_;
    /// What tools give is cut out of it.
    std::string prose_;
    std::vector<Session> sessions_;
    /// Bytes that are due.
    double due_ = 0;
    WorldCounts counts_;
};

} // namespace sallowmere
