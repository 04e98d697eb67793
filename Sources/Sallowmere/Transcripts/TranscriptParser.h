// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Text/Json.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// Reads the end of a transcript and folds its lines, oldest first, into a `ParsedTail`.
///
/// A transcript holds one JSON object per line and is appended to while we read. Lines that
/// cannot matter are passed over by a substring test before any JSON is parsed; a damaged line is
/// skipped alone. Stateless; any thread.
namespace TranscriptParser {

/// How much of a transcript's end is read, in bytes.
inline constexpr std::uint64_t tailBytes = 524'288;
/// How many of the newest events are kept.
inline constexpr std::size_t maxEvents = 12;

/// Absent when nothing could be read: no file, an error, an empty file.
std::optional<ParsedTail> parseTail(const FileSystem& files, const std::string& path);

/// Lines without their line feeds, in UTF-8, invalid sequences allowed.
ParsedTail parseLines(std::span<const std::string_view> lines);

/// A line of type "user": the working directory, the prompt, and that the user reacted.
void handleUser(const JsonObject& object, ParsedTail& tail);

/// A line of type "assistant": the model, its prose and its tool calls. `lineIndex` counts the
/// lines of the tail from 1 and makes the events' identities.
void handleAssistant(const JsonObject& object, ParsedTail& tail, std::vector<LogEvent>& events,
                     std::size_t lineIndex);

/// One tool call of an assistant line.
void handleToolUse(const QString& name, const JsonObject& input, const QString& eventId,
                   std::optional<Timestamp> timestamp, ParsedTail& tail,
                   std::vector<LogEvent>& events);

/// The first question of a call to ask the user; absent when it has no text.
std::optional<AskQuestion> parseAsk(const JsonObject& input);

/// What a tool call is about, on one line of at most 48 characters and an ellipsis; may be empty.
QString primaryArgument(const JsonObject& input);

/// What the session is doing, said by its newest event.
QString activityLine(const LogEvent& event);

} // namespace TranscriptParser

} // namespace sallowmere
