// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Platform/Timestamp.h"
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Usage/FileState.h"
#include "Sallowmere/Usage/SampleTimeline.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// Computes the usage windows from all transcripts that changed within the last seven days and
/// five hours. Each file is read on from where the previous computation stopped, so that a
/// computation costs a directory listing and the bytes that were appended.
///
/// Not thread-safe: one thread at a time. The file system must outlive the calculator.
class UsageCalculator {
public:
    /// Seconds: one week and one block.
    static constexpr double horizonSpan = 622'800;
    /// Bytes of each read.
    static constexpr std::size_t readChunk = 4'194'304;
    /// Bytes of the longest line that is looked at: real ones reach some megabytes, and a longer
    /// one would have to be held in memory as long as it stays unfinished.
    static constexpr std::size_t longestLine = 67'108'864;
    /// A file's samples are pruned of old ones only above this count.
    static constexpr std::size_t pruneThreshold = 4'096;

    explicit UsageCalculator(const FileSystem& files);
    UsageCalculator(const UsageCalculator&) = delete;
    UsageCalculator& operator=(const UsageCalculator&) = delete;
    ~UsageCalculator();

    /// The windows at `now`. Whatever cannot be read is passed over; what was learned before stays.
    UsageSnapshot compute(const Settings& settings, Timestamp now);

private:
    class ReadBuffer;

    void scanFiles(const Settings& settings, Timestamp horizon);
    bool scanDirectory(const std::string& directory, const Settings& settings, Timestamp horizon,
                       std::vector<std::string>& subdirectories);
    void ingest(const std::string& path, std::uint64_t size, Timestamp modified,
                const Settings& settings, Timestamp horizon);
    void readOn(ReadableFile& file, FileState& state, const Settings& settings, Timestamp horizon);
    void parseLines(std::string_view text, FileState& state, const Settings& settings,
                    Timestamp horizon);
    void parseLine(std::string_view line, FileState& state, const Settings& settings,
                   Timestamp horizon);

    const FileSystem& files_;
    JsonReader reader_;
    /// Exists while files are being read.
    std::unique_ptr<ReadBuffer> buffer_;
    FileStates states_;
    SampleTimeline timeline_;
    std::optional<Timestamp> currentBlockStart_;
};

} // namespace sallowmere
