// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Usage/Sample.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <optional>
#include <span>

namespace sallowmere {

/// The rules that turn samples, in ascending order of time, into usage windows. Pure functions.
///
/// A 5-hour block starts at the exact time of its first sample. Sums run in the order of the
/// samples, so that the same samples always give the same figure.
namespace UsageWindows {

/// Seconds.
inline constexpr double blockLength = 18'000;
inline constexpr double week = 604'800;

/// The next moment after `now` that lies a whole number of weeks from the anchor; the anchor
/// itself while it lies ahead. Absent without an anchor.
std::optional<Timestamp> nextWeeklyReset(std::optional<Timestamp> anchor, Timestamp now);

struct Chain {
    /// Start of the last block; absent without samples.
    std::optional<Timestamp> anchor;
    /// The largest block's weighted tokens.
    double peak = 0;
};

/// Chains the samples into blocks.
Chain deriveChain(std::span<const Sample> samples);

/// Moves the start of a block on to the start of the block that holds the last sample.
std::optional<Timestamp> advance(std::optional<Timestamp> anchor, std::span<const Sample> samples);

/// The windows at `now`. `currentBlockStart` is the caller's memory of the current block: set from
/// the samples while absent, then only moved on.
UsageSnapshot assemble(std::span<const Sample> samples, const Settings& settings, Timestamp now,
                       std::optional<Timestamp>& currentBlockStart);

} // namespace UsageWindows

} // namespace sallowmere
