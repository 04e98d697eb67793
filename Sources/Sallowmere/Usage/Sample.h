// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <string_view>

namespace sallowmere {

/// The usage of one assistant message. Its texts belong to the file state it was read into.
struct Sample {
    std::string_view messageId;
    Timestamp time{};
    /// Weighted tokens.
    double weighted = 0;
    /// Model identifier, lower-cased; empty when the message names none.
    std::string_view model;
};

/// Whether a lower-cased model identifier counts for the "Fable" family's weekly allowance.
bool isFableFamily(std::string_view model);

} // namespace sallowmere
