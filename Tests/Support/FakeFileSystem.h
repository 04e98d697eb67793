// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sallowmere {

/// A file system in memory that records what was touched. Directories exist through what is in
/// them, or by `addDirectory`.
class FakeFileSystem : public FileSystem {
public:
    struct File {
        std::string content;
        Timestamp modified{};
        std::optional<Timestamp> created;
        EntryType type = EntryType::regular;
        bool readable = true;
        bool executable = false;
        bool removable = true;
        /// Whether anything but the name is told about the file.
        bool statusKnown = true;
        /// Whether the size of the open file can be told.
        bool sizeKnown = true;
        /// Reads at or beyond this offset fail.
        std::uint64_t failsAt = UINT64_MAX;
        /// Each read gives at most so many bytes.
        std::size_t readLimit = SIZE_MAX;
    };

    /// Adds or replaces a regular file.
    File& addFile(const std::string& path, std::string content, Timestamp modified = {});
    void addDirectory(const std::string& path) { directories_.insert(path); }
    void addLink(const std::string& path, const std::string& target) { links_[path] = target; }
    /// Directories that cannot be listed.
    void forbidListing(const std::string& path) { unlistable_.insert(path); }
    void remove(const std::string& path) { entries_.erase(path); }
    File& file(const std::string& path) { return entries_.at(path); }

    bool list(const std::string& directory, const Visitor& visit) const override;
    std::optional<FileStatus> status(const std::string& path, Links links) const override;
    std::unique_ptr<ReadableFile> open(const std::string& path) const override;
    bool isExecutableFile(const std::string& path) const override;
    bool removeFile(const std::string& path) const override;

    /// Paths as they were opened, listed or asked to be removed, in order, and bytes read since the
    /// last `forget`.
    const std::vector<std::string>& opened() const { return opened_; }
    const std::vector<std::string>& listed() const { return listed_; }
    const std::vector<std::string>& removed() const { return removed_; }
    std::uint64_t bytesRead() const { return bytesRead_; }
    void forget();

private:
    class OpenFile;

    std::string resolved(const std::string& path) const;

    mutable std::map<std::string, File> entries_;
    mutable std::map<std::string, std::string> links_;
    std::set<std::string> directories_;
    std::set<std::string> unlistable_;
    mutable std::vector<std::string> opened_;
    mutable std::vector<std::string> listed_;
    mutable std::vector<std::string> removed_;
    mutable std::uint64_t bytesRead_ = 0;
};

} // namespace sallowmere
