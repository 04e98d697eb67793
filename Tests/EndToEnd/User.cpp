// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/User.h"

#include "EndToEnd/XReply.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include <xcb/xtest.h>

namespace sallowmere {

User::User(XClient& client) : client_(client) {}

void User::send(std::uint8_t event, std::uint8_t detail, int x, int y) {
    xcb_test_fake_input(client_.xcb(), event, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    client_.sync();
}

void User::moveTo(int x, int y) {
    // In two steps, as no hand jumps: a window under the pointer then gets a movement too.
    send(XCB_MOTION_NOTIFY, 0, x, y > 0 ? y - 1 : y + 1);
    send(XCB_MOTION_NOTIFY, 0, x, y);
}

void User::moveInto(const Box& box) {
    moveTo(box.x + box.width / 2, box.y + box.height / 2);
}

void User::click(Button button) {
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void User::touch() {
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(Button::left));
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(Button::left));
}

void User::clickOn(const Box& box, Button button) {
    moveInto(box);
    click(button);
}

void User::type(std::string_view text) {
    for (const char character : text) {
        tap(static_cast<std::uint8_t>(character));
    }
}

void User::tap(std::uint32_t key) {
    const std::uint8_t code = keycode(key);
    client_.tap(code);
}

void User::tapWithShift(std::uint32_t key) {
    const std::uint8_t shift = keycode(Keys::shift);
    client_.press(shift);
    tap(key);
    client_.release(shift);
}

std::uint8_t User::keycode(std::uint32_t symbol) {
    const xcb_setup_t* const setup = xcb_get_setup(client_.xcb());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mapping = reply(xcb_get_keyboard_mapping_reply, client_,
                               xcb_get_keyboard_mapping(client_.xcb(), setup->min_keycode, count));
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int key = 0; key < count; ++key) {
        if (symbols[key * mapping->keysyms_per_keycode] == symbol) {
            return static_cast<std::uint8_t>(setup->min_keycode + key);
        }
    }
    throw std::runtime_error("no key for " + std::to_string(symbol));
}

} // namespace sallowmere
