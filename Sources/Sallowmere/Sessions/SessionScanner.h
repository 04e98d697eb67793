// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Settings/Settings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sallowmere {

/// Turns the assistant's projects directory into the list of recent sessions. A transcript is read
/// only when its size or modification time changed since the previous scan.
///
/// Not thread-safe: one thread at a time. The file system must outlive the scanner.
class SessionScanner {
public:
    /// A transcript that may be listed.
    struct Candidate {
        std::string path;
        /// Bytes.
        std::uint64_t size = 0;
        Timestamp modified{};
        /// The modification time where the file system knows no birth time.
        Timestamp created{};
    };

    explicit SessionScanner(const FileSystem& files) : files_(files) {}

    /// The sessions, newest first: at most `maxSessions`, none whose transcript is older than
    /// `showIdleHours`. Whatever cannot be listed or read is left out. No two have the same `id`:
    /// of several the newest is kept.
    std::vector<SessionInfo> scan(const Settings& settings, Timestamp now);

    /// Builds one session from what its transcript's tail and its file tell. `key` is the
    /// transcript's full path.
    static SessionInfo make(const std::string& key, const ParsedTail& tail, Timestamp now,
                            Timestamp modified, Timestamp created);

    /// The short name of a project whose working directory is unknown, from a transcript's path:
    /// what follows the last dash of its directory's name. Projects with a dash in their own name
    /// lose what stands before it.
    static QString projectName(std::string_view fromEncodedDir);

    /// "Fable", "Opus", "Sonnet", "Haiku", or "Claude" for any other model and for none.
    static QString modelBadge(const std::optional<QString>& model);

private:
    struct CacheEntry {
        std::uint64_t size = 0;
        Timestamp modified{};
        ParsedTail tail;
    };

    std::vector<Candidate> candidates(const Settings& settings, Timestamp horizon) const;
    const ParsedTail* cachedTail(const Candidate& candidate);

    const FileSystem& files_;
    /// By full path; holds no more than the last scan kept.
    std::unordered_map<std::string, CacheEntry> cache_;
};

} // namespace sallowmere
