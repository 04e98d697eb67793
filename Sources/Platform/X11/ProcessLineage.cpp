// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/ProcessLineage.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <string>

namespace sallowmere::ProcessLineage {

std::optional<std::int32_t> parentIn(std::string_view stat) {
    // "PID (NAME) STATE PARENT ...", and nothing after the name holds a parenthesis.
    constexpr std::string_view beforeParent = ") S ";
    const std::size_t nameEnd = stat.rfind(')');
    if (nameEnd == std::string_view::npos || stat.size() - nameEnd < beforeParent.size()) {
        return std::nullopt;
    }
    const std::string_view rest = stat.substr(nameEnd + beforeParent.size());
    std::int32_t parent = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), parent);
    return error == std::errc() ? std::optional(parent) : std::nullopt;
}

std::optional<std::int32_t> parentOf(std::int32_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat", std::ios::binary);
    return parentIn(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::vector<std::int32_t> of(std::int32_t pid, const Parent& parent) {
    std::vector<std::int32_t> result;
    std::optional<std::int32_t> next = pid;
    while (next && *next > 1 && result.size() <= maximumAncestors) {
        result.push_back(*next);
        next = parent(*next);
    }
    return result;
}

} // namespace sallowmere::ProcessLineage
