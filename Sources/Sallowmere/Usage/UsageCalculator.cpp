// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageCalculator.h"

#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Transcripts/JSONLine.h"
#include "Sallowmere/Usage/MessageIdPeek.h"
#include "Sallowmere/Usage/UsageWindows.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

namespace sallowmere {

namespace {

std::size_t positionOf(std::string_view needle, std::string_view text) {
    const void* hit = memmem(text.data(), text.size(), needle.data(), needle.size());
    return hit == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
}

/// Position just behind the last line feed of a text; 0 when it has none.
std::size_t endOfLastLine(std::string_view text) {
    const void* hit = memrchr(text.data(), '\n', text.size());
    return hit == nullptr
               ? 0
               : static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) + 1;
}

/// Whether the line holds "usage". It mostly stands near the end.
bool mentionsUsage(std::string_view line) {
    constexpr std::string_view mark = R"("usage")";
    constexpr std::size_t nearEnd = 1'024;
    const std::size_t tailStart = line.size() - std::min(line.size(), nearEnd);
    return positionOf(mark, line.substr(tailStart)) != std::string_view::npos
           || positionOf(mark, line) != std::string_view::npos;
}

double weightOf(const JsonObject& usage, const Settings& settings) {
    const auto count = [&usage](std::string_view key) { return usage.number(key).value_or(0); };
    return count("input_tokens") * settings.weightInput
           + count("output_tokens") * settings.weightOutput
           + count("cache_creation_input_tokens") * settings.weightCacheCreate
           + count("cache_read_input_tokens") * settings.weightCacheRead;
}

} // namespace

/// The unfinished line followed by the chunk last read, with room behind for the JSON parser.
/// Its memory is never filled in advance: a small read touches few pages.
class UsageCalculator::ReadBuffer {
public:
    std::string_view content() const { return {data_.get(), used_}; }

    void assign(std::string_view content) {
        used_ = 0;
        reserve(content.size());
        std::copy(content.begin(), content.end(), data_.get());
        used_ = content.size();
    }

    /// Where the next chunk goes.
    std::span<char> room() {
        reserve(used_ + readChunk);
        return {data_.get() + used_, readChunk};
    }

    void grow(std::size_t count) { used_ += count; }

    void clear() { used_ = 0; }

    void dropFront(std::size_t count) {
        used_ -= count;
        std::memmove(data_.get(), data_.get() + count, used_);
    }

private:
    void reserve(std::size_t size) {
        if (size + JsonReader::padding <= capacity_) {
            return;
        }
        const std::size_t capacity = size + size / 4 + JsonReader::padding;
        auto data = std::make_unique_for_overwrite<char[]>(capacity);
        std::copy_n(data_.get(), used_, data.get());
        data_ = std::move(data);
        capacity_ = capacity;
    }

    std::unique_ptr<char[]> data_;
    std::size_t used_ = 0;
    std::size_t capacity_ = 0;
};

UsageCalculator::UsageCalculator(const FileSystem& files) : files_(files) {}
UsageCalculator::~UsageCalculator() = default;

UsageSnapshot UsageCalculator::compute(const Settings& settings, Timestamp now) {
    const Timestamp horizon = advancedBy(now, -horizonSpan);
    scanFiles(settings, horizon);
    buffer_.reset();
    reader_ = JsonReader();
    return UsageWindows::assemble(timeline_.samples(states_, horizon), settings, now,
                                  currentBlockStart_);
}

void UsageCalculator::scanFiles(const Settings& settings, Timestamp horizon) {
    // A list of what is still to be visited instead of recursion: neither the stack nor the number
    // of open directories depends on how deep somebody nests them.
    std::vector<std::string> directories;
    if (!scanDirectory(settings.claudeRoot, settings, horizon, directories)) {
        return;
    }
    while (!directories.empty()) {
        const std::string directory = std::move(directories.back());
        directories.pop_back();
        scanDirectory(directory, settings, horizon, directories);
    }
    std::erase_if(states_, [this, horizon](const auto& entry) {
        const bool stale = entry.second.modified <= horizon;
        if (stale) {
            timeline_.invalidate();
        }
        return stale;
    });
}

bool UsageCalculator::scanDirectory(const std::string& directory, const Settings& settings,
                                    Timestamp horizon, std::vector<std::string>& subdirectories) {
    return files_.list(directory, [&](std::string_view name, EntryType type) {
        if (name.starts_with('.')) {
            return;
        }
        if (type == EntryType::directory) {
            subdirectories.push_back(joinPath(directory, name));
        } else if (type == EntryType::regular && hasExtension(name, "jsonl")) {
            const std::string path = joinPath(directory, name);
            const std::optional<FileStatus> status = files_.status(path, Links::keep);
            if (status && status->type == EntryType::regular && status->modified > horizon) {
                ingest(path, status->size, status->modified, settings, horizon);
            }
        }
    });
}

void UsageCalculator::ingest(const std::string& path, std::uint64_t size, Timestamp modified,
                             const Settings& settings, Timestamp horizon) {
    auto entry = states_.try_emplace(path, modified).first;
    entry->second.modified = modified;
    if (size < entry->second.offset) {
        timeline_.invalidate();
        states_.erase(entry);
        entry = states_.try_emplace(path, modified).first;
    }
    FileState& state = entry->second;
    if (size == state.offset) {
        return;
    }
    const std::unique_ptr<ReadableFile> file = files_.open(path);
    if (!file) {
        return;
    }
    readOn(*file, state, settings, horizon);
    if (state.samples.size() > pruneThreshold) {
        std::erase_if(state.samples, [=](const Sample& s) { return s.time <= horizon; });
    }
    state.samples.shrink_to_fit();
}

void UsageCalculator::readOn(ReadableFile& file, FileState& state, const Settings& settings,
                             Timestamp horizon) {
    if (!buffer_) {
        buffer_ = std::make_unique<ReadBuffer>();
    }
    buffer_->assign(state.carried);
    while (const std::size_t count = file.read(state.offset, buffer_->room()).value_or(0)) {
        state.offset += count;
        const std::size_t searched = buffer_->content().size();
        buffer_->grow(count);
        if (const std::size_t end = endOfLastLine(buffer_->content().substr(searched))) {
            parseLines(buffer_->content().substr(0, searched + end), state, settings, horizon);
            buffer_->dropFront(searched + end);
        }
        if (buffer_->content().size() > longestLine) {
            state.skipsLine = true;
            buffer_->clear();
        }
    }
    state.carried.assign(buffer_->content());
    state.carried.shrink_to_fit();
}

void UsageCalculator::parseLines(std::string_view text, FileState& state, const Settings& settings,
                                 Timestamp horizon) {
    // Searching the whole text for what few lines hold is faster than splitting it into lines.
    constexpr std::string_view assistantMark = R"("type":"assistant")";
    if (state.skipsLine) {
        text.remove_prefix(text.find('\n') + 1);
        state.skipsLine = false;
    }
    for (;;) {
        const std::size_t hit = positionOf(assistantMark, text);
        if (hit == std::string_view::npos) {
            return;
        }
        const std::size_t start = endOfLastLine(text.substr(0, hit));
        const std::size_t end = text.find('\n', hit);
        parseLine(text.substr(start, end - start), state, settings, horizon);
        text.remove_prefix(end + 1);
    }
}

void UsageCalculator::parseLine(std::string_view line, FileState& state, const Settings& settings,
                                Timestamp horizon) {
    if (line.size() > longestLine) {
        return;
    }
    const std::optional<std::string_view> peekedId = peekMessageId(line);
    if ((peekedId && state.seenIds.contains(*peekedId)) || !mentionsUsage(line)) {
        return;
    }
    const std::optional<JsonObject> object = reader_.paddedObject(line);
    if (!object || object->string("type") != "assistant") {
        return;
    }
    const JsonObject message = object->object("message").value_or(JsonObject());
    const std::optional<std::string_view> id = message.string("id");
    const std::optional<JsonObject> usage = message.object("usage");
    const std::optional<Timestamp> time = JSONLine::date(object->string("timestamp"));
    if (!id || !usage || !time || *time <= horizon) {
        return;
    }
    const std::optional<std::string_view> ownId = state.seenIds.insert(*id);
    if (!ownId) {
        return;
    }
    const std::string_view model = state.intern(message.string("model").value_or(""));
    state.samples.push_back({*ownId, *time, weightOf(*usage, settings), model});
    timeline_.add(state.samples.back());
}

} // namespace sallowmere
