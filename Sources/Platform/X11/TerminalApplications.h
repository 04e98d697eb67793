// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

namespace sallowmere {

/// Terminals under the names that their windows bear on this desktop.
namespace TerminalApplications {

/// The window classes and application ids that an identifier stands for, to be compared in any
/// case of letters: the counterparts of a terminal that the settings name by default, else the
/// identifier itself. Empty for an empty identifier. What is returned may refer to `identifier`.
std::vector<std::string_view> namesOf(std::string_view identifier);

} // namespace TerminalApplications

} // namespace sallowmere
