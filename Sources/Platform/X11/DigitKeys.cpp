// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/DigitKeys.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <optional>

namespace sallowmere::DigitKeys {

namespace {

using Keys = std::vector<xkb_keycode_t>;

/// The keys that a key event can name.
constexpr xkb_keycode_t firstKey = 8;
constexpr xkb_keycode_t lastKey = 255;

struct Unref {
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using State = std::unique_ptr<xkb_state, Unref>;

State copyOf(xkb_keymap* keymap, xkb_state* state) {
    State copy(xkb_state_new(keymap));
    xkb_state_update_mask(copy.get(), xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                          xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                          xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                          xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_DEPRESSED),
                          xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_LATCHED),
                          xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_LOCKED));
    return copy;
}

/// The first key that gives one of these, in the order of their preference.
std::optional<xkb_keycode_t> keyGiving(std::initializer_list<xkb_keysym_t> symbols,
                                       xkb_state* state) {
    for (const xkb_keysym_t symbol : symbols) {
        for (xkb_keycode_t key = firstKey; key <= lastKey; ++key) {
            if (xkb_state_key_get_one_sym(state, key) == symbol) {
                return key;
            }
        }
    }
    return std::nullopt;
}

bool makesCommands(xkb_state* state) {
    for (const char* modifier : {XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO}) {
        if (xkb_state_mod_name_is_active(state, modifier, XKB_STATE_MODS_EFFECTIVE) > 0) {
            return true;
        }
    }
    return false;
}

/// The sets of keys to hold, the smaller ones first.
std::vector<Keys> heldKeys(xkb_state* state) {
    const auto shift = keyGiving({XKB_KEY_Shift_L, XKB_KEY_Shift_R}, state);
    const auto thirdLevel = keyGiving({XKB_KEY_ISO_Level3_Shift}, state);
    std::vector<Keys> result{{}};
    if (shift) {
        result.push_back({*shift});
    }
    if (thirdLevel) {
        result.push_back({*thirdLevel});
    }
    if (shift && thirdLevel) {
        result.push_back({*shift, *thirdLevel});
    }
    return result;
}

} // namespace

std::vector<xkb_keycode_t> find(int digit, xkb_keymap* keymap, xkb_state* state) {
    const auto offset = static_cast<xkb_keysym_t>(digit);
    for (const xkb_keysym_t zero : {xkb_keysym_t(XKB_KEY_0), xkb_keysym_t(XKB_KEY_KP_0)}) {
        for (const Keys& held : heldKeys(state)) {
            const State then = copyOf(keymap, state);
            for (const xkb_keycode_t key : held) {
                xkb_state_update_key(then.get(), key, XKB_KEY_DOWN);
            }
            const auto key = keyGiving({zero + offset}, then.get());
            if (key && !makesCommands(then.get())) {
                Keys result = held;
                result.push_back(*key);
                return result;
            }
        }
    }
    return {};
}

} // namespace sallowmere::DigitKeys
