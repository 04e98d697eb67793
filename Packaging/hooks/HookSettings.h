// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "JsonTree.h"

namespace sallowmere {

/// Adds our hook to the text of the assistant's settings, and takes it out again. Whatever else
/// stands there stays, byte for byte. A hook is ours when its command is, see
/// `HookSnippet::isOurs`: one that the user wrote counts too.
namespace HookSettings {

struct Outcome {
    /// The text as it should be; the given one when there is nothing to change or it is refused.
    std::string text;
    /// The events that the hook was added to or taken from.
    std::vector<std::string> events;
    /// Why nothing can be done: the text does not parse, "hooks" or an event of ours in it is of
    /// the wrong kind, or a key is there twice whose meaning matters.
    std::optional<Complaint> refusal;
};

/// Adds the hook for each event of the snippet that does not have it yet.
Outcome installed(std::string_view text);

/// Takes all our hooks out. An entry, list or object that is empty then goes too, unless it has a
/// comment or was already there in `original`, the text before the hook was added; that is what
/// remains when it was not changed otherwise. An object remains of settings that hold nothing else,
/// unless the original had none. Without an original, or with one that cannot be read, there was an
/// empty object.
Outcome removed(std::string_view text, std::optional<std::string_view> original);

struct State {
    /// Events that have the hook and that do not, in the snippet's order.
    std::vector<std::string> present;
    std::vector<std::string> missing;
    std::optional<Complaint> refusal;
};
State state(std::string_view text);

} // namespace HookSettings

} // namespace sallowmere
