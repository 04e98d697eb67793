// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FolderOpener.h"

namespace sallowmere {

/// Leaves it to `xdg-open`, which knows the desktop's file manager and outlives this program. Only
/// an absolute path of a directory that exists is handed on: never an option, an address or a file.
FolderOpener xdgFolderOpener();

} // namespace sallowmere
