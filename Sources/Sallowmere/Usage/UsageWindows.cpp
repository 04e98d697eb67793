// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageWindows.h"

#include <algorithm>
#include <cmath>

namespace sallowmere::UsageWindows {

namespace {

struct Sums {
    double all = 0;
    double fable = 0;
};

/// Sums over the samples with `after` < time <= `until`.
Sums weeklySums(std::span<const Sample> samples, Timestamp after, Timestamp until) {
    Sums sums;
    // Neighbours mostly share their model, and one file's equal models share their text.
    std::string_view knownModel;
    bool knownAnswer = isFableFamily(knownModel);
    for (const Sample& sample : samples) {
        if (sample.time <= after || sample.time > until) {
            continue;
        }
        sums.all += sample.weighted;
        if (sample.model.data() != knownModel.data()) {
            knownModel = sample.model;
            knownAnswer = isFableFamily(knownModel);
        }
        if (knownAnswer) {
            sums.fable += sample.weighted;
        }
    }
    return sums;
}

double blockSum(std::span<const Sample> samples, Timestamp start) {
    const Timestamp end = advancedBy(start, blockLength);
    double sum = 0;
    for (const Sample& sample : samples) {
        if (sample.time >= start && sample.time < end) {
            sum += sample.weighted;
        }
    }
    return sum;
}

} // namespace

std::optional<Timestamp> nextWeeklyReset(std::optional<Timestamp> anchor, Timestamp now) {
    if (!anchor) {
        return std::nullopt;
    }
    const double weeks = std::max(std::ceil(secondsBetween(*anchor, now) / week), 0.0);
    const Timestamp candidate = advancedBy(*anchor, weeks * week);
    return candidate > now ? candidate : advancedBy(candidate, week);
}

Chain deriveChain(std::span<const Sample> samples) {
    Chain chain;
    double current = 0;
    for (const Sample& sample : samples) {
        if (chain.anchor && sample.time < advancedBy(*chain.anchor, blockLength)) {
            current += sample.weighted;
            continue;
        }
        chain.peak = std::max(chain.peak, current);
        chain.anchor = sample.time;
        current = sample.weighted;
    }
    chain.peak = std::max(chain.peak, current);
    return chain;
}

std::optional<Timestamp> advance(std::optional<Timestamp> anchor, std::span<const Sample> samples) {
    if (!anchor) {
        return std::nullopt;
    }
    // In ascending order every sample before the one that moves the anchor lies before its block's
    // end too, so one walk suffices.
    for (const Sample& sample : samples) {
        if (sample.time >= advancedBy(*anchor, blockLength)) {
            anchor = sample.time;
        }
    }
    return anchor;
}

UsageSnapshot assemble(std::span<const Sample> samples, const Settings& settings, Timestamp now,
                       std::optional<Timestamp>& currentBlockStart) {
    const std::optional<Timestamp> reset = nextWeeklyReset(settings.weeklyResetDate, now);
    const Timestamp weekStart = advancedBy(reset.value_or(now), -week);
    const Sums weekly = weeklySums(samples, weekStart, now);
    const Chain chain = deriveChain(samples);
    if (!currentBlockStart) {
        currentBlockStart = chain.anchor;
    }
    currentBlockStart = advance(currentBlockStart, samples);

    UsageWindow fiveHour;
    if (currentBlockStart && now < advancedBy(*currentBlockStart, blockLength)) {
        fiveHour.weightedTokens = blockSum(samples, *currentBlockStart);
        fiveHour.resetsIn = secondsBetween(now, advancedBy(*currentBlockStart, blockLength));
    }
    fiveHour.limit =
        std::max(std::max(settings.fiveHourLimit, chain.peak), fiveHour.weightedTokens);

    std::optional<double> weeklyResetsIn;
    if (reset) {
        weeklyResetsIn = secondsBetween(now, *reset);
    }
    UsageSnapshot snapshot;
    snapshot.fiveHour = fiveHour;
    snapshot.weekly = {weekly.all, std::max(settings.weeklyLimit, weekly.all), weeklyResetsIn,
                       std::nullopt};
    snapshot.weeklyFable =
        UsageWindow{weekly.fable, std::max(settings.weeklyFableLimit, weekly.fable), weeklyResetsIn,
                    std::nullopt};
    snapshot.computedAt = now;
    return snapshot;
}

} // namespace sallowmere::UsageWindows
