// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace sallowmere {

/// Whether this process may open so many more files at present. For what calls libraries that end
/// the program when they get no descriptor; it takes one itself to find out. Any thread.
bool hasSpareDescriptors(std::size_t count);

} // namespace sallowmere
