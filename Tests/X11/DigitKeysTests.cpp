// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/DigitKeys.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Keys = std::vector<xkb_keycode_t>;

// Places on every keyboard of a personal computer.
constexpr xkb_keycode_t shift = 50;
constexpr xkb_keycode_t thirdLevel = 92;
constexpr xkb_keycode_t capsLock = 66;
constexpr xkb_keycode_t numLock = 77;
constexpr xkb_keycode_t control = 37;
constexpr xkb_keycode_t alt = 64;
constexpr xkb_keycode_t super = 133;
constexpr xkb_keycode_t altGr = 108;
constexpr xkb_keycode_t digitRow = 10;
constexpr xkb_keycode_t keypad[] = {87, 88, 89, 83, 84, 85, 79, 80, 81};

/// A keyboard of which the test presses the keys.
class Keyboard {
public:
    explicit Keyboard(const char* layout, const char* variant = nullptr,
                      const char* options = nullptr)
        : context_(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES)) {
        const xkb_rule_names names{"evdev", "pc105", layout, variant, options};
        keymap_.reset(
            xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
        if (!keymap_) {
            throw std::runtime_error(std::string("no layout ") + layout);
        }
        state_.reset(xkb_state_new(keymap_.get()));
    }

    Keyboard& press(xkb_keycode_t key) {
        xkb_state_update_key(state_.get(), key, XKB_KEY_DOWN);
        return *this;
    }
    Keyboard& tap(xkb_keycode_t key) {
        press(key);
        xkb_state_update_key(state_.get(), key, XKB_KEY_UP);
        return *this;
    }
    Keyboard& lockGroup(xkb_layout_index_t group) {
        xkb_state_update_mask(state_.get(), 0, 0, 0, 0, 0, group);
        return *this;
    }
    Keyboard& latch(const char* modifier) {
        const xkb_mod_mask_t mask = 1U << xkb_keymap_mod_get_index(keymap_.get(), modifier);
        xkb_state_update_mask(state_.get(), 0, mask, 0, 0, 0, 0);
        return *this;
    }

    Keys keysFor(int digit) const { return DigitKeys::find(digit, keymap_.get(), state_.get()); }

private:
    struct Unref {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    std::unique_ptr<xkb_context, Unref> context_;
    std::unique_ptr<xkb_keymap, Unref> keymap_;
    std::unique_ptr<xkb_state, Unref> state_;
};

/// The row's keys in their order, each with these held.
void expectDigitRow(const Keyboard& keyboard, const Keys& held) {
    for (int digit = 1; digit <= 9; ++digit) {
        Keys expected = held;
        expected.push_back(digitRow + static_cast<xkb_keycode_t>(digit) - 1);
        EXPECT_EQ(keyboard.keysFor(digit), expected) << digit;
    }
}

void expectNoDigit(const Keyboard& keyboard) {
    for (int digit = 1; digit <= 9; ++digit) {
        EXPECT_THAT(keyboard.keysFor(digit), IsEmpty()) << digit;
    }
}

TEST(DigitKeys, StandAloneInMostLayouts) {
    for (const char* layout : {"us", "de", "tr", "ara", "bg", "ch", "hu"}) {
        SCOPED_TRACE(layout);
        expectDigitRow(Keyboard(layout), {});
    }
}

TEST(DigitKeys, NeedShiftWhereLettersOrSignsComeFirst) {
    for (const char* layout : {"fr", "cz", "be"}) {
        SCOPED_TRACE(layout);
        expectDigitRow(Keyboard(layout), {shift});
    }
}

TEST(DigitKeys, NeedTheThirdLevelInSomeLayouts) {
    expectDigitRow(Keyboard("lt"), {thirdLevel});
    expectDigitRow(Keyboard("ara", "digits"), {thirdLevel});
}

TEST(DigitKeys, NeedShiftAndTheThirdLevelWhereTheLayoutHasDigitsOfItsOwn) {
    expectDigitRow(Keyboard("ir"), {shift, thirdLevel});
}

TEST(DigitKeys, MayStandInAnotherOrder) {
    Keyboard keyboard("us", "dvp");
    EXPECT_THAT(keyboard.keysFor(1), ElementsAre(shift, 14U));
    EXPECT_THAT(keyboard.keysFor(7), ElementsAre(shift, 11U));
}

TEST(DigitKeys, AreTakenFromTheGroupThatIsLocked) {
    expectDigitRow(Keyboard("us,fr"), {});
    expectDigitRow(Keyboard("us,fr").lockGroup(1), {shift});
    expectDigitRow(Keyboard("fr,us"), {shift});
    expectDigitRow(Keyboard("fr,us").lockGroup(1), {});
    expectDigitRow(Keyboard("us,ir").lockGroup(1), {shift, thirdLevel});
}

TEST(DigitKeys, HeedCapsLockWhereItShiftsDigits) {
    expectDigitRow(Keyboard("us").tap(capsLock), {});
    expectDigitRow(Keyboard("fr").tap(capsLock), {shift});
    expectDigitRow(Keyboard("fr", "bepo"), {shift});
    expectDigitRow(Keyboard("fr", "bepo").tap(capsLock), {});
    expectDigitRow(Keyboard("fr", nullptr, "caps:shiftlock").tap(capsLock), {});
}

TEST(DigitKeys, AreTheRowsAlsoWithNumLock) {
    expectDigitRow(Keyboard("us").tap(numLock), {});
    expectDigitRow(Keyboard("fr").tap(numLock), {shift});
}

TEST(DigitKeys, AreTheKeypadsWhereTheRowHasNone) {
    Keyboard keyboard("th");
    keyboard.tap(numLock);
    for (int digit = 1; digit <= 9; ++digit) {
        EXPECT_THAT(keyboard.keysFor(digit), ElementsAre(keypad[digit - 1]));
    }
}

TEST(DigitKeys, AreAbsentWhereNoKeyGivesThem) {
    expectNoDigit(Keyboard("th"));
    expectNoDigit(Keyboard("us", nullptr, "caps:shiftlock").tap(capsLock));
}

TEST(DigitKeys, TakeAHeldShiftForWhatItIs) {
    expectNoDigit(Keyboard("us").press(shift));
    expectDigitRow(Keyboard("fr").press(shift), {});
}

TEST(DigitKeys, TakeAHeldThirdLevelForWhatItIs) {
    expectNoDigit(Keyboard("de").press(altGr));
    expectDigitRow(Keyboard("lt").press(altGr), {});
}

TEST(DigitKeys, AreAbsentWhileAKeyMakesCommandsOfThem) {
    for (const xkb_keycode_t key : {control, alt, super}) {
        SCOPED_TRACE(key);
        expectNoDigit(Keyboard("us").press(key));
        expectNoDigit(Keyboard("fr").press(key));
        expectNoDigit(Keyboard("ir").press(key));
    }
}

TEST(DigitKeys, AreAbsentWhileAModifierWaitsForTheNextKey) {
    for (const char* modifier : {"Shift", "Control", "Mod1", "Mod4"}) {
        SCOPED_TRACE(modifier);
        expectNoDigit(Keyboard("us").latch(modifier));
    }
    expectDigitRow(Keyboard("fr").latch("Shift"), {});
}

TEST(DigitKeys, LeaveTheStateAsItWas) {
    Keyboard keyboard("fr");
    EXPECT_EQ(keyboard.keysFor(1), keyboard.keysFor(1));
    EXPECT_THAT(keyboard.keysFor(1), ElementsAre(shift, digitRow));
}

} // namespace
} // namespace sallowmere
