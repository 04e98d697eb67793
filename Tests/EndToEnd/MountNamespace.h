// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

namespace sallowmere {

/// Gives this process a mount namespace of its own: what it mounts from then on is there for it and
/// its children only, and gone when they are. Whoever is not the superuser gets a user namespace
/// with it. Throws `std::system_error` where the system allows neither.
void enterMountNamespace();

/// Becomes another program; `arguments` end with a null and begin with its path. Throws when it
/// cannot be started.
void becomeProgram(char** arguments);

} // namespace sallowmere
