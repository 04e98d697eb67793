// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Keystrokes.h"

#include "Platform/X11/DigitKeys.h"

#include <cstdarg>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace sallowmere {

namespace {

// What it cannot read is not typed with; there is nobody to tell.
void ignore(xkb_context* /*context*/, xkb_log_level /*level*/, const char* /*format*/,
            va_list /*arguments*/) {}

void send(xcb_connection_t* connection, std::uint8_t event, xkb_keycode_t key) {
    xcb_test_fake_input(connection, event, static_cast<std::uint8_t>(key), XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
}

} // namespace

X11Keystrokes::X11Keystrokes(X11Connection& connection)
    : connection_(connection),
      context_(xkb_context_new(
          xkb_context_flags(XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES))) {
    xkb_context_set_log_fn(context_.get(), ignore);
    tellsKeymap_ = connection_.isAlive()
                   && xkb_x11_setup_xkb_extension(connection_.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                  XKB_X11_MIN_MINOR_XKB_VERSION,
                                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                                  nullptr, nullptr, nullptr)
                          != 0;
}

bool X11Keystrokes::isTrusted() {
    return tellsKeymap_ && connection_.isAlive() && connection_.has(xcb_test_id);
}

void X11Keystrokes::typeDigit(int digit) {
    if (digit < 1 || digit > 9 || !isTrusted()) {
        return;
    }
    const std::vector<xkb_keycode_t> keys = keysFor(digit);
    xcb_connection_t* const xcb = connection_.xcb();
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        send(xcb, XCB_KEY_PRESS, *key);
    }
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        send(xcb, XCB_KEY_RELEASE, *key);
    }
    xcb_flush(xcb);
}

// All of it is read anew each time: the user may change the layout at any time.
std::vector<xkb_keycode_t> X11Keystrokes::keysFor(int digit) {
    xcb_connection_t* const xcb = connection_.xcb();
    const std::int32_t keyboard = xkb_x11_get_core_keyboard_device_id(xcb);
    const std::unique_ptr<xkb_keymap, Unref> keymap(
        xkb_x11_keymap_new_from_device(context_.get(), xcb, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) {
        return {};
    }
    const std::unique_ptr<xkb_state, Unref> state(
        xkb_x11_state_new_from_device(keymap.get(), xcb, keyboard));
    return state ? DigitKeys::find(digit, keymap.get(), state.get()) : std::vector<xkb_keycode_t>();
}

} // namespace sallowmere
