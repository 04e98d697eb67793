// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Transcripts/JSONLine.h"

#include <string_view>

namespace sallowmere {

/// The moment that a well-formed text names; throws when it names none.
inline Timestamp at(std::string_view text) {
    return JSONLine::date(text).value();
}

} // namespace sallowmere
