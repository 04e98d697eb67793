// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// What the hook adds to the assistant's settings: settings.json of this directory, which is part
/// of the program.
namespace HookSnippet {

/// The whole file: settings of its own, in the default style, with LF. It is plain: no comments and
/// no escapes.
std::string_view text();

/// One event of it. All are pieces of `text()`.
struct Event {
    std::string name;
    /// Key and list.
    std::string_view member;
    /// The list's one element.
    std::string_view entry;
};
const std::vector<Event>& events();

/// The key "hooks" with all events.
std::string_view hooksMember();

/// Whether a command calls the hook: by its name, alone or behind a path, in quotes or not, and
/// with nothing else.
bool isOurs(std::string_view command);

} // namespace HookSnippet

} // namespace sallowmere
