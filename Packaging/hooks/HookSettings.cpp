// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSettings.h"

#include "HookEntries.h"
#include "HookRemoval.h"
#include "HookSnippet.h"
#include "TextEdits.h"

namespace sallowmere::HookSettings {

namespace {

/// For a text without a value.
std::string withSnippet(const JsonTree& tree, const TextStyle& style) {
    std::string text(tree.text());
    if (!tree.comments().empty() && !text.ends_with('\n')) {
        text += style.lineBreak;
    }
    const std::string_view snippet = HookSnippet::text();
    return text + laidOut(snippet.substr(0, snippet.rfind('}') + 1), style, {}) + style.lineBreak;
}

std::string withMissingEvents(const HookEntries& entries, const TextStyle& style) {
    TextEdits edits(entries.tree());
    std::vector<std::string_view> members;
    for (std::size_t i = 0; i < entries.events().size(); ++i) {
        const HookEntries::Event& event = entries.events()[i];
        const HookSnippet::Event& ours = HookSnippet::events()[i];
        if (event.list == nullptr) {
            members.push_back(ours.member);
        } else if (event.entries.empty()) {
            edits.append(*event.list, std::span(&ours.entry, 1), style);
        }
    }
    if (!members.empty()) {
        edits.append(*entries.hooks(), members, style);
    }
    return edits.result();
}

std::string completed(const HookEntries& entries) {
    const TextStyle style = styleOf(entries.tree());
    if (!entries.tree().root()) {
        return withSnippet(entries.tree(), style);
    }
    if (entries.hooks() != nullptr) {
        return withMissingEvents(entries, style);
    }
    TextEdits edits(entries.tree());
    const std::string_view hooks = HookSnippet::hooksMember();
    edits.append(*entries.tree().root(), std::span(&hooks, 1), style);
    return edits.result();
}

/// Whether the text is the original with nothing but our hooks added.
bool isInstalledFrom(std::string_view original, std::string_view text) {
    const State before = state(original);
    return !before.refusal && before.present.empty() && installed(original).text == text;
}

} // namespace

Outcome installed(std::string_view text) {
    const HookEntries entries(text);
    if (entries.complaint()) {
        return {std::string(text), {}, entries.complaint()};
    }
    std::vector<std::string> missing = entries.missing();
    return {missing.empty() ? std::string(text) : completed(entries), std::move(missing), {}};
}

Outcome removed(std::string_view text, std::optional<std::string_view> original) {
    const HookEntries entries(text);
    std::vector<std::string> present = entries.present();
    if (entries.complaint() || present.empty()) {
        return {std::string(text), {}, entries.complaint()};
    }
    if (original && isInstalledFrom(*original, text)) {
        return {std::string(*original), std::move(present), {}};
    }
    return {withoutHooks(entries, original ? keptOf(*original) : KeptContainers()),
            std::move(present),
            {}};
}

State state(std::string_view text) {
    const HookEntries entries(text);
    if (entries.complaint()) {
        return {{}, {}, entries.complaint()};
    }
    return {entries.present(), entries.missing(), {}};
}

} // namespace sallowmere::HookSettings
