// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookEntries.h"

#include "HookSnippet.h"
#include "Sallowmere/Text/Json.h"

#include <algorithm>
#include <utility>

namespace sallowmere {

namespace {

using Kind = JsonNode::Kind;

std::string inQuotes(std::string_view key) {
    return '"' + std::string(key) + '"';
}

} // namespace

bool HookEntries::Event::isOursAlone() const {
    return list != nullptr && !entries.empty() && entries.size() == list->children.size()
           && std::all_of(entries.begin(), entries.end(),
                          [](const Entry& entry) { return entry.isOursAlone(); });
}

HookEntries::HookEntries(std::string_view text) : tree_(text), complaint_(tree_.complaint()) {
    if (complaint_ || !tree_.root()) {
        for (const HookSnippet::Event& event : HookSnippet::events()) {
            events_.push_back({event.name, nullptr, 0, {}});
        }
        return;
    }
    try {
        read();
    } catch (Complaint& complaint) {
        complaint_ = std::move(complaint);
    }
}

void HookEntries::read() {
    const JsonNode& root = *tree_.root();
    if (root.kind != Kind::object) {
        throw Complaint{root.range.begin, "the settings are no object"};
    }
    // Both readers have to agree that it is in order.
    if (!JsonReader().object(tree_.withoutComments())) {
        throw Complaint{root.range.begin, "this cannot be read"};
    }
    if (const std::optional<std::size_t> index = member(root, "hooks")) {
        hooksMember_ = *index;
        hooks_ = &root.children[*index];
        if (hooks_->kind != Kind::object) {
            throw Complaint{hooks_->range.begin, "\"hooks\" is no object"};
        }
    }
    for (const HookSnippet::Event& event : HookSnippet::events()) {
        events_.push_back(readEvent(event.name));
    }
}

HookEntries::Event HookEntries::readEvent(const std::string& name) const {
    Event event{name, nullptr, 0, {}};
    const auto index = hooks_ != nullptr ? member(*hooks_, name) : std::nullopt;
    if (!index) {
        return event;
    }
    event.member = *index;
    event.list = &hooks_->children[*index];
    if (event.list->kind != Kind::array) {
        throw Complaint{event.list->range.begin, inQuotes(name) + " is no list"};
    }
    for (std::size_t i = 0; i < event.list->children.size(); ++i) {
        if (std::optional<Entry> entry = readEntry(*event.list, i)) {
            event.entries.push_back(*std::move(entry));
        }
    }
    return event;
}

std::optional<HookEntries::Entry> HookEntries::readEntry(const JsonNode& list,
                                                         std::size_t index) const {
    const JsonNode& object = list.children[index];
    const std::optional<std::size_t> hooks = member(object, "hooks");
    if (!hooks || object.children[*hooks].kind != Kind::array) {
        return std::nullopt;
    }
    Entry entry{index, &object.children[*hooks], {}};
    for (std::size_t i = 0; i < entry.hooks->children.size(); ++i) {
        if (isOurHook(entry.hooks->children[i])) {
            entry.ours.push_back(i);
        }
    }
    return entry.ours.empty() ? std::nullopt : std::optional(std::move(entry));
}

bool HookEntries::isOurHook(const JsonNode& hook) const {
    return stringOf(hook, "type") == "command" && HookSnippet::isOurs(stringOf(hook, "command"));
}

std::optional<std::size_t> HookEntries::member(const JsonNode& object, std::string_view key) const {
    const std::vector<std::size_t> indices = tree_.members(object, key);
    if (indices.size() > 1) {
        throw Complaint{object.keys[indices[1]].begin,
                        inQuotes(key) + " stands here for the second time"};
    }
    return indices.empty() ? std::nullopt : std::optional(indices.front());
}

std::string HookEntries::stringOf(const JsonNode& object, std::string_view key) const {
    const std::optional<std::size_t> index = member(object, key);
    return index ? tree_.string(object.children[*index].range) : std::string();
}

std::vector<std::string> HookEntries::names(bool havingOurs) const {
    std::vector<std::string> names;
    for (const Event& event : events_) {
        if (event.entries.empty() != havingOurs) {
            names.push_back(event.name);
        }
    }
    return names;
}

std::vector<std::string> HookEntries::present() const {
    return names(true);
}

std::vector<std::string> HookEntries::missing() const {
    return names(false);
}

} // namespace sallowmere
