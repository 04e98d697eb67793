// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

namespace sallowmere {

/// Whether windows may be transparent: a compositor puts them together. Without one what is
/// transparent is black.
bool hasCompositor(X11Connection& connection);

} // namespace sallowmere
