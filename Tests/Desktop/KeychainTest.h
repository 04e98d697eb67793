// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop/PrivateBus.h"
#include "Platform/Keychain.h"
#include "System/EnvironmentVariable.h"

#include <optional>
#include <ostream>
#include <string>

namespace sallowmere {

inline const std::string secretService = "org.freedesktop.secrets";

inline bool operator==(const Keychain::Item& left, const Keychain::Item& right) {
    return left.outcome == right.outcome && left.secret == right.secret;
}

// By this name the test framework looks for it.
// NOLINTNEXTLINE(readability-identifier-naming)
inline void PrintTo(const Keychain::Item& item, std::ostream* stream) {
    using State = Keychain::Item::Outcome;
    *stream << (item.outcome == State::found     ? "found "
                : item.outcome == State::missing ? "missing "
                                                 : "refused ")
            << item.secret;
}

inline Keychain::Item found(const std::string& secret) {
    return {Keychain::Item::Outcome::found, secret};
}

inline const Keychain::Item missing{Keychain::Item::Outcome::missing, {}};
inline const Keychain::Item refused{Keychain::Item::Outcome::refused, {}};

} // namespace sallowmere
