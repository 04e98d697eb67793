// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/Windows.h"
#include "X11/XClient.h"

#include <cstdint>
#include <string_view>

namespace sallowmere {

/// Keys by what they mean.
namespace Keys {
inline constexpr std::uint32_t tab = 0xFF09;
inline constexpr std::uint32_t enter = 0xFF0D;
inline constexpr std::uint32_t escape = 0xFF1B;
inline constexpr std::uint32_t shift = 0xFFE1;
inline constexpr std::uint32_t down = 0xFF54;
} // namespace Keys

/// The hands of a user: one pointer and one keyboard on an X server.
class User {
public:
    enum class Button : std::uint8_t { left = 1, right = 3 };

    explicit User(XClient& client);

    void moveTo(int x, int y);
    void moveInto(const Box& box);
    /// With a mouse: the finger rests on the button for a moment.
    void click(Button button = Button::left);
    /// On a touchpad: the button goes up as soon as it went down.
    void touch();
    void clickOn(const Box& box, Button button = Button::left);

    /// Small letters, digits and blanks.
    void type(std::string_view text);
    void tap(std::uint32_t key);
    void tapWithShift(std::uint32_t key);

private:
    void send(std::uint8_t event, std::uint8_t detail, int x = 0, int y = 0);
    std::uint8_t keycode(std::uint32_t symbol);

    XClient& client_;
};

} // namespace sallowmere
