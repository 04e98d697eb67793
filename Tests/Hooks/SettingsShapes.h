// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace sallowmere {

/// A file of the assistant's settings without our hooks, and what is odd about it.
struct SettingsShape {
    std::string name;
    std::string text;
};

/// Every combination of indentation, line breaks, comments, hooks that are there, and how the file
/// begins and ends.
std::vector<SettingsShape> settingsShapes();

/// How often `part` stands in `text`.
std::size_t countOf(const std::string& text, const std::string& part);

} // namespace sallowmere
