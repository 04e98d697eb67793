// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Sessions/SessionRecords.h"

#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// Lines of a transcript in the shapes that the assistant writes, without their line feeds.
///
/// Where a function takes `members`, these are further members of the line as JSON, each followed
/// by a comma: `"isMeta":true,`.
namespace transcript {

/// A JSON string of that value.
std::string json(std::string_view text);

/// A member "timestamp" for `members`.
std::string time(std::string_view timestamp);

/// A line of type "user"; `content` is JSON.
std::string user(std::string_view content, std::string_view members = "");
/// What the user typed.
std::string prompt(std::string_view text, std::string_view members = "");
/// What a tool returned.
std::string toolResult(std::string_view members = "");

/// A line of type "assistant"; `blocks` is JSON, the elements of the message's content.
std::string assistant(std::string_view blocks, std::string_view members = "");
/// The same with a message that has just the given members.
std::string assistantMessage(std::string_view message, std::string_view members = "");

/// A block of prose.
std::string prose(std::string_view text);
/// A block that calls a tool; `input` is JSON.
std::string toolUse(std::string_view name, std::string_view input = "{}");
/// A block that asks the user.
std::string question(std::string_view text);
/// A block that presents a plan.
std::string plan(std::string_view text);

/// The mark of the end of a turn.
std::string turnEnd(std::string_view members);
std::string title(std::string_view text);

/// What the lines tell.
ParsedTail folded(const std::vector<std::string>& lines);
/// The content of a file with these lines.
std::string file(const std::vector<std::string>& lines);

} // namespace transcript

} // namespace sallowmere
