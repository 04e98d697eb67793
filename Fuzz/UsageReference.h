// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Settings/Settings.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere::fuzz {

/// The usage of a transcript by the rules alone: every line is looked at, nothing is remembered.
struct UsageReference {
    struct Message {
        Timestamp time;
        double weighted = 0;
        bool isFable = false;
    };

    /// In the order of their lines.
    std::vector<Message> messages;
    /// Whether some message stands on several lines that count.
    bool repeats = false;

    /// Only whole lines count, and messages later than the horizon.
    UsageReference(std::string_view transcript, const Settings& settings, Timestamp horizon);

    bool isInOrder() const;
    /// Sums in the order of time over the week that ends at `now`.
    double week(Timestamp now, bool fableOnly) const;
    /// The current block's sum; 0 when it is over.
    double block(Timestamp now) const;
    /// The largest block's sum.
    double peak() const;

private:
    void readLine(std::string_view line, const Settings& settings, Timestamp horizon);
    std::vector<Message> sorted() const;
    /// Each block's messages.
    std::vector<std::vector<Message>> blocks() const;

    std::set<std::string, std::less<>> ids_;
};

} // namespace sallowmere::fuzz
