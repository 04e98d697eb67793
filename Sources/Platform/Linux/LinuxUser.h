// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace sallowmere {

/// The user's home directory without a trailing slash: what the environment variable HOME says, if
/// that is a full path, else what the user database says. Empty when neither knows; the root
/// directory is "/".
std::string homeDirectory();

} // namespace sallowmere
