// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSnippet.h"

#include "JsonTree.h"
#include "Sallowmere/Text/Paths.h"
#include "SnippetText.h"

#include <algorithm>

namespace sallowmere::HookSnippet {

namespace {

const JsonTree& tree() {
    static const JsonTree tree(text());
    return tree;
}

const JsonNode& hooks() {
    return tree().root()->children.front();
}

std::vector<Event> readEvents() {
    std::vector<Event> events;
    for (std::size_t i = 0; i < hooks().keys.size(); ++i) {
        events.push_back({tree().string(hooks().keys[i]), tree().text(hooks().item(i)),
                          tree().text(hooks().children[i].item(0))});
    }
    return events;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace

std::string_view text() {
    return snippetText;
}

const std::vector<Event>& events() {
    static const std::vector<Event> events = readEvents();
    return events;
}

std::string_view hooksMember() {
    return tree().text(tree().root()->item(0));
}

bool isOurs(std::string_view command) {
    command = trimmed(command);
    std::string_view forbidden = " \t\r\n'\"`\\;&|<>()";
    if (command.size() > 2 && (command.front() == '"' || command.front() == '\'')
        && command.back() == command.front()) {
        command = command.substr(1, command.size() - 2);
        forbidden = "\r\n'\"`\\";
    }
    return !command.ends_with('/') && command.find_first_of(forbidden) == std::string_view::npos
           && lastPathComponent(command) == "sallowmere-notify";
}

} // namespace sallowmere::HookSnippet
