// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProcessTable.h"

#include <map>
#include <string>
#include <vector>

namespace sallowmere {

/// A process table that says what the test tells it.
class FakeProcessTable : public ProcessTable {
public:
    std::string listingText;
    std::map<std::int32_t, std::string> directories;
    std::uint32_t user = 1000;
    std::vector<TerminalRule> platformTerminals;

    std::string listing() const override { return listingText; }

    std::optional<std::string> workingDirectory(std::int32_t pid) const override {
        const auto found = directories.find(pid);
        return found == directories.end() ? std::nullopt : std::optional(found->second);
    }

    std::uint32_t userId() const override { return user; }
    std::span<const TerminalRule> terminals() const override { return platformTerminals; }
};

} // namespace sallowmere
