// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a file of the assistant's settings. Whatever stands in it, the hook is added to a
// file that stays in order, or to none; taking it out again gives the very file back; and nothing
// of what else stands there is lost.
#include "HookSettings.h"
#include "Support/Input.h"
#include "Support/Require.h"

namespace sallowmere::fuzz {
namespace {

/// Whether the first text can be had from the second by deleting.
bool survives(const std::string& part, const std::string& text) {
    std::size_t found = 0;
    for (const char c : text) {
        found += found < part.size() && part[found] == c ? 1U : 0U;
    }
    return found == part.size();
}

void requireRemoval(const std::string& text, std::optional<std::string_view> original) {
    const HookSettings::Outcome outcome = HookSettings::removed(text, original);
    require(!outcome.refusal, "what is in order can be removed from");
    const HookSettings::State state = HookSettings::state(outcome.text);
    require(!state.refusal, "what remains is in order");
    require(state.present.empty(), "nothing of ours remains");
    const bool isChanged = outcome.text != text;
    require(isChanged != outcome.events.empty(), "what changes has a reason");
}

void requireInstalled(const std::string& text, const std::string& installed) {
    const HookSettings::State state = HookSettings::state(installed);
    require(!state.refusal, "what is written is in order");
    require(state.missing.empty(), "what is installed is there");
    require(HookSettings::installed(installed).text == installed, "twice is once");
    require(survives(text, installed), "everything else stays");
    if (HookSettings::state(text).present.empty()) {
        require(HookSettings::removed(installed, text).text == text, "the file comes back");
        // A comment leaves nothing of the original to compare with.
        const std::string changed = installed + "/* new */";
        if (!HookSettings::state(changed).refusal) {
            requireRemoval(changed, text);
        }
    }
    requireRemoval(installed, text);
    requireRemoval(installed, std::nullopt);
}

void requireSwitchRules(const std::string& text) {
    const HookSettings::Outcome outcome = HookSettings::installed(text);
    if (outcome.refusal) {
        require(outcome.text == text, "what is refused stays");
        require(outcome.refusal->at <= text.size(), "a complaint is about something");
        require(HookSettings::removed(text, std::nullopt).text == text,
                "what is refused stays when the hook is removed");
        return;
    }
    require((outcome.text == text) == outcome.events.empty(), "what changes has a reason");
    requireInstalled(text, outcome.text);
    requireRemoval(text, std::nullopt);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireSwitchRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
