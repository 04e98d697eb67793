// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "JsonTree.h"

namespace sallowmere {

/// Where our hooks stand in the assistant's settings.
class HookEntries {
public:
    /// An entry of an event's list that calls our hook, perhaps among others.
    struct Entry {
        /// Index in the event's list.
        std::size_t index = 0;
        /// The entry's own list, and the indices of our hooks in it.
        const JsonNode* hooks = nullptr;
        std::vector<std::size_t> ours;

        bool isOursAlone() const { return ours.size() == hooks->children.size(); }
    };

    /// An event that the snippet names.
    struct Event {
        std::string name;
        /// Its list; null when the settings do not name it. And its index in "hooks".
        const JsonNode* list = nullptr;
        std::size_t member = 0;
        std::vector<Entry> entries;

        /// Whether nothing else is in its list, which has something in it.
        bool isOursAlone() const;
    };

    explicit HookEntries(std::string_view text);
    HookEntries(const HookEntries&) = delete;
    HookEntries& operator=(const HookEntries&) = delete;
    ~HookEntries() = default;

    /// Why these are no settings that can be changed; nothing else is known then.
    const std::optional<Complaint>& complaint() const { return complaint_; }

    const JsonTree& tree() const { return tree_; }
    /// The value of "hooks", null when there is none, and its index in the root.
    const JsonNode* hooks() const { return hooks_; }
    std::size_t hooksMember() const { return hooksMember_; }
    /// Those of the snippet, in its order.
    const std::vector<Event>& events() const { return events_; }

    /// The names of the events that have our hook, and of those that do not.
    std::vector<std::string> present() const;
    std::vector<std::string> missing() const;

private:
    void read();
    Event readEvent(const std::string& name) const;
    std::optional<Entry> readEntry(const JsonNode& list, std::size_t index) const;
    bool isOurHook(const JsonNode& hook) const;
    /// The one member of that name; absent when there is none.
    std::optional<std::size_t> member(const JsonNode& object, std::string_view key) const;
    std::string stringOf(const JsonNode& object, std::string_view key) const;
    std::vector<std::string> names(bool havingOurs) const;

    JsonTree tree_;
    std::optional<Complaint> complaint_;
    const JsonNode* hooks_ = nullptr;
    std::size_t hooksMember_ = 0;
    std::vector<Event> events_;
};

} // namespace sallowmere
