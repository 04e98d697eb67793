// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/WindowManagerTest.h"

#include "X11/WaitFor.h"

namespace sallowmere {

namespace {

constexpr const char* fieldName = "Prompt this session…";

} // namespace

void WindowManagerTest::SetUp() {
    sitDown(GetParam());
    desk().home.addSession("lantern", "Lantern");
    terminal_ = &desk().addOther();
    desk().startPanel();
}

Box WindowManagerTest::barPlace() {
    constexpr int width = 240;
    return {(Windows::screen(client()).width - width) / 2, 0, width, 30};
}

Control WindowManagerTest::openDetails() {
    panel().click("Lantern, done");
    return panel().atRest(fieldName, "text");
}

void WindowManagerTest::startTyping() {
    desk().user.clickOn(openDetails().box);
    waitForField();
}

void WindowManagerTest::waitForField() {
    waitFor("the field to have the keyboard", [&] {
        return AccessibleTree::isFocused(field()) && !client().hasFocus(terminal().window);
    });
}

Control WindowManagerTest::field() {
    return panel().tree().find(fieldName, "text");
}

void WindowManagerTest::waitForText(const std::string& text) {
    waitFor('"' + text + "\" in the field", [&] { return AccessibleTree::text(field()) == text; });
}

void WindowManagerTest::waitForKeyboardBack() {
    waitFor("the keyboard to come back", [&] {
        return client().hasFocus(terminal().window) && client().activeWindow() == terminal().window;
    });
}

} // namespace sallowmere
