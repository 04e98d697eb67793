// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace sallowmere {

enum class EntryType { regular, directory, link, other };

/// What the file system says of one entry.
struct FileStatus {
    EntryType type = EntryType::other;
    /// Bytes.
    std::uint64_t size = 0;
    /// Last change of the content. Kept within `distantPast` and `distantFuture`.
    Timestamp modified{};
    /// Birth time; absent where the file system does not record one.
    std::optional<Timestamp> created;
};

/// Whether a symbolic link stands for itself or for what it points to.
enum class Links { keep, follow };

/// An open regular file. Closed when destroyed.
class ReadableFile {
public:
    ReadableFile() = default;
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;
    virtual ~ReadableFile() = default;

    /// Present size in bytes; absent when it cannot be told.
    virtual std::optional<std::uint64_t> size() const = 0;

    /// Reads at most `buffer.size()` bytes that start at byte `offset`.
    /// Returns how many were read, 0 at the end of the file, absent on an error.
    virtual std::optional<std::size_t> read(std::uint64_t offset, std::span<char> buffer) = 0;
};

/// Access to files. Paths are bytes as the kernel has them, in whatever encoding; there is
/// nothing at a path with a NUL in it.
/// Nothing throws. Any thread, several at once; an open file belongs to one thread at a time.
class FileSystem {
public:
    /// Called for each entry with its name and its own type: a link is a `link`. The name is valid
    /// during the call only.
    using Visitor = std::function<void(std::string_view name, EntryType type)>;

    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    /// Visits the entries of `directory`, hidden ones too, without "." and "..", in the order the
    /// file system has them. Returns false, without a visit, when it cannot be opened as a
    /// directory; an entry that cannot be read ends the listing early.
    virtual bool list(const std::string& directory, const Visitor& visit) const = 0;

    /// Absent when there is nothing at `path` or it may not be asked for.
    virtual std::optional<FileStatus> status(const std::string& path, Links links) const = 0;

    /// Opens a regular file, also through links. Null for anything else (a directory, a FIFO, a
    /// device) and when it may not be read. Never waits for another process.
    virtual std::unique_ptr<ReadableFile> open(const std::string& path) const = 0;

    /// Whether `path` is a regular file, also through links, that this user may execute.
    virtual bool isExecutableFile(const std::string& path) const = 0;

    /// Removes a file, or a link itself; never a directory. False when nothing was removed.
    virtual bool removeFile(const std::string& path) const = 0;
};

/// Everything from byte `offset` to the end, however far the file grows meanwhile; absent when a
/// read fails or there are more than `most` bytes.
std::optional<std::string> readToEnd(ReadableFile& file, std::uint64_t offset,
                                     std::uint64_t most = UINT64_MAX);

/// The whole content of a regular file; absent when it cannot be opened or a read fails.
std::optional<std::string> readWholeFile(const FileSystem& files, const std::string& path);

} // namespace sallowmere
