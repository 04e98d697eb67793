// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace sallowmere {

/// Shows a directory in the desktop's file manager and returns at once. Nothing happens when there
/// is no such directory or no file manager. Main thread.
using FolderOpener = std::function<void(const std::string& directory)>;

} // namespace sallowmere
