// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Text/Split.h"
#include "Sallowmere/Transcripts/JSONLine.h"

#include <algorithm>
#include <array>

namespace sallowmere::TranscriptParser {

namespace {

bool mayMatter(std::string_view line) {
    constexpr std::array<std::string_view, 4> marks{R"("type":"user")", R"("type":"assistant")",
                                                    R"("type":"ai-title")", "stop_hook_summary"};
    return std::any_of(marks.begin(), marks.end(), [line](std::string_view mark) {
        return line.find(mark) != std::string_view::npos;
    });
}

void noteActivity(const JsonObject& object, ParsedTail& tail) {
    if (const std::optional<Timestamp> time = JSONLine::date(object.string("timestamp"))) {
        tail.lastActivityEntryAt = time;
    }
}

void foldObject(const JsonObject& object, std::size_t lineIndex, ParsedTail& tail) {
    const std::string_view type = object.string("type").value_or("");
    if (type == "ai-title") {
        const std::optional<QString> title = object.text("aiTitle");
        if (title && !title->isEmpty()) {
            tail.title = title;
        }
    } else if (type == "user") {
        noteActivity(object, tail);
        handleUser(object, tail);
    } else if (type == "assistant") {
        noteActivity(object, tail);
        handleAssistant(object, tail, tail.events, lineIndex);
    } else if (type == "system" && object.string("subtype") == "stop_hook_summary") {
        // A marker without a readable time leaves no time, not the one of an earlier marker.
        tail.lastStopAt = JSONLine::date(object.string("timestamp"));
    }
    if (!tail.sessionId) {
        tail.sessionId = object.text("sessionId");
    }
}

} // namespace

std::optional<ParsedTail> parseTail(const FileSystem& files, const std::string& path) {
    const std::unique_ptr<ReadableFile> file = files.open(path);
    if (!file) {
        return std::nullopt;
    }
    const std::uint64_t size = file->size().value_or(0);
    const std::uint64_t start = size < tailBytes ? 0 : size - tailBytes;
    const std::optional<std::string> bytes = readToEnd(*file, start);
    if (!bytes || bytes->empty()) {
        return std::nullopt;
    }
    std::string_view text = *bytes;
    const std::size_t firstLineFeed = text.find('\n');
    if (start > 0 && firstLineFeed != std::string_view::npos) {
        text.remove_prefix(firstLineFeed + 1);
    }
    return parseLines(splitPieces(text, '\n'));
}

ParsedTail parseLines(std::span<const std::string_view> lines) {
    ParsedTail tail;
    JsonReader reader;
    std::size_t lineIndex = 0;
    for (const std::string_view line : lines) {
        ++lineIndex;
        if (!mayMatter(line)) {
            continue;
        }
        if (const std::optional<JsonObject> object = reader.object(line)) {
            foldObject(*object, lineIndex, tail);
        }
    }
    if (tail.events.size() > maxEvents) {
        tail.events.erase(tail.events.begin(), tail.events.end() - maxEvents);
    }
    return tail;
}

} // namespace sallowmere::TranscriptParser
