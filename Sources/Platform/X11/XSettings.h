// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace sallowmere {

/// The settings that a desktop shares with all programs on an X server.
namespace XSettings {

/// An integer among them; absent when there is none of that name. `data` is what their keeper
/// publishes, which may be anything.
std::optional<std::int32_t> integer(std::span<const std::uint8_t> data, std::string_view name);

/// Whether the desktop wants things to move: it does unless it says otherwise.
bool wantsAnimations(X11Connection& connection);

/// The window of whoever publishes them; none when nobody does.
std::optional<xcb_window_t> keeper(X11Connection& connection);

} // namespace XSettings

} // namespace sallowmere
