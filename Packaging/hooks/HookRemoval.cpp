// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookRemoval.h"

#include "TextEdits.h"

#include <algorithm>

namespace sallowmere {

namespace {

Range inside(const JsonNode& node) {
    return {node.range.begin + 1, node.range.end - 1};
}

/// What stands in an empty object or list; nothing for one that has items.
std::string innerText(const JsonTree& tree, const JsonNode& node) {
    return node.children.empty() ? std::string(tree.text(inside(node))) : std::string();
}

KeptContainers keptOf(const HookEntries& entries) {
    KeptContainers kept;
    const std::optional<JsonNode>& root = entries.tree().root();
    if (entries.complaint()) {
        return kept;
    }
    kept.root = root.has_value();
    kept.inRoot = root ? innerText(entries.tree(), *root) : std::string();
    if (entries.hooks() != nullptr) {
        kept.inHooks = innerText(entries.tree(), *entries.hooks());
    }
    for (const HookEntries::Event& event : entries.events()) {
        if (event.list != nullptr) {
            kept.inEvents.emplace(event.name, innerText(entries.tree(), *event.list));
        }
    }
    return kept;
}

/// Removes what is ours from the inside out: what is left empty is removed by what is around it.
class Removal {
public:
    Removal(const HookEntries& entries, const KeptContainers& kept)
        : entries_(entries), tree_(entries.tree()), kept_(kept), edits_(tree_) {}

    std::string result() {
        if (canGo(*entries_.hooks(), emptyEvents().size(), kept_.inHooks.has_value())) {
            removeFromRoot();
        } else {
            removeEvents();
        }
        return edits_.result();
    }

private:
    /// Whether nothing is left of an object or list of which so many items go.
    bool isEmptied(const JsonNode& node, std::size_t count) const {
        return node.children.size() == count && !tree_.hasCommentOfItsOwn(node);
    }

    bool canGo(const JsonNode& node, std::size_t count, bool isKept) const {
        return !isKept && isEmptied(node, count);
    }

    bool isEmptied(const HookEntries::Event& event) const {
        return event.isOursAlone() && isEmptied(*event.list, event.entries.size());
    }

    /// The members of "hooks" that go.
    std::vector<std::size_t> emptyEvents() const {
        std::vector<std::size_t> members;
        for (const HookEntries::Event& event : entries_.events()) {
            if (isEmptied(event) && !kept_.inEvents.contains(event.name)) {
                members.push_back(event.member);
            }
        }
        return members;
    }

    void removeItems(const JsonNode& node, const std::vector<std::size_t>& items,
                     const std::string& whenEmpty) {
        if (isEmptied(node, items.size())) {
            edits_.replace(inside(node), whenEmpty);
        } else {
            edits_.remove(node, items);
        }
    }

    void removeFromRoot() {
        const JsonNode& root = *tree_.root();
        if (canGo(root, 1, kept_.root)) {
            const std::string_view rest = tree_.text().substr(root.range.end);
            const std::size_t lineBreak = rest.starts_with("\r\n") ? 2U
                                          : rest.starts_with('\n') ? 1U
                                                                   : 0U;
            edits_.replace({root.range.begin, root.range.end + lineBreak}, {});
        } else {
            removeItems(root, {entries_.hooksMember()}, kept_.inRoot);
        }
    }

    void removeEvents() {
        const std::vector<std::size_t> members = emptyEvents();
        removeItems(*entries_.hooks(), members, kept_.inHooks.value_or(""));
        for (const HookEntries::Event& event : entries_.events()) {
            const bool isGone =
                std::find(members.begin(), members.end(), event.member) != members.end();
            if (event.list != nullptr && !isGone) {
                removeEntries(event);
            }
        }
    }

    void removeEntries(const HookEntries::Event& event) {
        std::vector<std::size_t> whole;
        for (const HookEntries::Entry& entry : event.entries) {
            if (entry.isOursAlone()) {
                whole.push_back(entry.index);
            } else {
                edits_.remove(*entry.hooks, entry.ours);
            }
        }
        if (!whole.empty()) {
            const auto inList = kept_.inEvents.find(event.name);
            removeItems(*event.list, whole, inList != kept_.inEvents.end() ? inList->second : "");
        }
    }

    const HookEntries& entries_;
    const JsonTree& tree_;
    const KeptContainers& kept_;
    TextEdits edits_;
};

} // namespace

KeptContainers keptOf(std::string_view original) {
    const HookEntries entries(original);
    if (entries.complaint() || entries.present().empty()) {
        return keptOf(entries);
    }
    // What holds nothing but our hooks is as much theirs as if we had written it.
    return keptOf(HookEntries(withoutHooks(entries, KeptContainers())));
}

std::string withoutHooks(const HookEntries& entries, const KeptContainers& kept) {
    return Removal(entries, kept).result();
}

} // namespace sallowmere
