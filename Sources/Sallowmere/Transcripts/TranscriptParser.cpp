// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Transcripts/JSONLine.h"

#include <algorithm>
#include <array>

namespace sallowmere::TranscriptParser {

namespace {

constexpr std::size_t readStep = 65'536;

/// Everything from `offset` to the end, however far the file has grown meanwhile.
std::optional<std::string> readToEnd(ReadableFile& file, std::uint64_t offset) {
    std::string bytes;
    bytes.reserve(tailBytes + readStep);
    for (;;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + readStep);
        const auto count = file.read(offset + before, {bytes.data() + before, readStep});
        if (!count) {
            return std::nullopt;
        }
        bytes.resize(before + *count);
        if (*count == 0) {
            return bytes;
        }
    }
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0) {
            lines.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

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
    return parseLines(splitLines(text));
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
