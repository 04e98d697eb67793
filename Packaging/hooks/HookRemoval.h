// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "HookEntries.h"

#include <map>

namespace sallowmere {

/// What was there before our hooks were, and stays when they go and leave it empty.
struct KeptContainers {
    /// Whether there was a root object, and what stood in it if it was empty.
    bool root = true;
    std::string inRoot;
    /// The same of "hooks"; absent when it was not there.
    std::optional<std::string> inHooks;
    /// The same of the lists of our events that were there.
    std::map<std::string, std::string> inEvents;
};

/// What was there in a text, our own hooks aside. Of one that cannot be read nothing is known.
KeptContainers keptOf(std::string_view original);

/// The text without our hooks and without what they leave empty, unless that is kept or has a
/// comment.
std::string withoutHooks(const HookEntries& entries, const KeptContainers& kept);

} // namespace sallowmere
