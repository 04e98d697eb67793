// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace sallowmere::fuzz {

/// The input as text. A copy of just that size, so that reading past it is noticed.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {data, data + size};
}

} // namespace sallowmere::fuzz
