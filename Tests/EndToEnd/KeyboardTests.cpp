// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/PromptingTest.h"

#include "X11/WaitFor.h"

#include <algorithm>

namespace sallowmere {
namespace {

/// The panel has the keyboard, from a click into the field.
class KeyboardWalk : public PromptingTest {
protected:
    void SetUp() override {
        PromptingTest::SetUp();
        openDetails();
        clickField();
    }

    bool isFocused(const std::string& name) {
        const std::vector<Control> controls = panel().tree().shown();
        return std::any_of(controls.begin(), controls.end(), [&](const Control& control) {
            return control.name == name && control.isFocused;
        });
    }

    void waitForFocus(const std::string& name) {
        waitFor("the keyboard on \"" + name + '"', [&] { return isFocused(name); });
    }
};

TEST_F(KeyboardWalk, TabGoesFromControlToControlAndBack) {
    // Nothing can be sent while the field is empty.
    desk().user.tap(Keys::tab);
    waitForFocus("Terminal");
    desk().user.tap(Keys::tab);
    waitForFocus("Quit Sallowmere");
    desk().user.tapWithShift(Keys::tab);
    waitForFocus("Terminal");
    desk().user.tapWithShift(Keys::tab);
    waitForFocus("Prompt this session…");
    desk().user.type("still");
    waitForText("still");
}

TEST_F(KeyboardWalk, ReturnDoesWhatAClickDoes) {
    desk().user.tap(Keys::tab);
    waitForFocus("Terminal");
    desk().user.tap(Keys::tab);
    waitForFocus("Quit Sallowmere");
    desk().user.tap(Keys::enter);
    EXPECT_EQ(desk().program->waitForEnd().status, 0);
}

TEST_F(KeyboardWalk, EscapeGivesTheKeyboardBackFromAnyControl) {
    desk().user.tap(Keys::tab);
    waitForFocus("Terminal");
    desk().user.tap(Keys::escape);
    waitFor("the keyboard to come back", [&] { return desk().client.hasFocus(other().window); });
    EXPECT_EQ(desk().received(other()), "");
}

} // namespace
} // namespace sallowmere
