// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace sallowmere {

/// Where a keyboard has its digits.
namespace DigitKeys {

/// The keys that type the digit `digit`, 1 to 9, on a keyboard with this keymap and in this state:
/// to be pressed in this order and released in reverse. The last one is the digit's own, those
/// before it are Shift and the key for the third level, where they are needed. The row of digits is
/// preferred to the keypad, and fewer keys to more.
///
/// Layout, locks and keys held down are all taken as `state` has them. Empty when this keyboard has
/// no way to type the digit now, and while Control, Alt or Super is in effect, with which no digit
/// is a digit.
std::vector<xkb_keycode_t> find(int digit, xkb_keymap* keymap, xkb_state* state);

} // namespace DigitKeys

} // namespace sallowmere
