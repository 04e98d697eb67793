// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <memory>

namespace sallowmere {

struct FreeXcbMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or an event of xcb's, which leaves it to the caller to free them.
template <typename T>
using XcbMemory = std::unique_ptr<T, FreeXcbMemory>;

} // namespace sallowmere
