// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/PromptingTest.h"

#include "X11/WaitFor.h"

#include <fstream>

namespace sallowmere {

namespace {

constexpr const char* fieldName = "Prompt this session…";

} // namespace

void PromptingTest::SetUp() {
    sitDown(WindowManager::Kind::openbox, ",\"claudeBinary\":\"" + programs_ / "claude" + '"');
    session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
    assistantDoes("exit 0");
    other_ = &desk().addOther();
    desk().startPanel();
}

void PromptingTest::assistantDoes(const std::string& commands) const {
    programs_.writeProgram("claude",
                           "echo \"$*\" >> '" + programs_ / "calls" + "'\n" + commands + '\n');
}

std::vector<std::string> PromptingTest::assistantCalls() const {
    std::ifstream stream(programs_ / "calls");
    std::vector<std::string> calls;
    for (std::string call; std::getline(stream, call);) {
        calls.push_back(call);
    }
    return calls;
}

void PromptingTest::openDetails() {
    panel().enter();
    panel().click("Lantern, done");
    panel().tree().find(fieldName, "text");
    panel().waitForRest();
}

Control PromptingTest::field() {
    return panel().tree().find(fieldName, "text");
}

void PromptingTest::clickField() {
    panel().click(fieldName, "text");
    waitFor("the field to have the keyboard", [&] {
        return AccessibleTree::isFocused(field()) && !desk().client.hasFocus(other().window);
    });
}

void PromptingTest::waitForText(const std::string& text) {
    waitFor('"' + text + "\" in the field", [&] { return AccessibleTree::text(field()) == text; });
}

} // namespace sallowmere
