// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace sallowmere {

/// What the program itself keeps in the user's home directory is nobody else's to read, whatever
/// the mask for new files says. Both fail silently: a directory that cannot be made is missing, and
/// a file that is not the user's stays as it is. Any thread.
namespace PrivateFiles {

/// Makes the directory and what is missing above it, for the user alone (0700). Those that are
/// there stay as they are.
void createDirectories(const std::string& path);

/// Leaves a file that the program has just made to the user alone (0600).
void makePrivate(const std::string& path);

} // namespace PrivateFiles

} // namespace sallowmere
