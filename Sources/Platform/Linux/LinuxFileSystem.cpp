// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxFileSystem.h"

#include <algorithm>
#include <cerrno>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {

namespace {

EntryType typeOfMode(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return EntryType::regular;
    case S_IFDIR:
        return EntryType::directory;
    case S_IFLNK:
        return EntryType::link;
    default:
        return EntryType::other;
    }
}

/// For the kernel a path would end at a NUL and name something else.
bool isNameable(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

/// File systems keep 64-bit seconds, far beyond what a timestamp holds.
Timestamp timestamp(const statx_timestamp& time) {
    constexpr auto least = std::chrono::floor<std::chrono::seconds>(distantPast);
    constexpr auto most = std::chrono::floor<std::chrono::seconds>(distantFuture);
    const std::chrono::sys_seconds seconds(std::chrono::seconds(std::clamp<std::int64_t>(
        time.tv_sec, least.time_since_epoch().count(), most.time_since_epoch().count())));
    return seconds + std::chrono::microseconds(time.tv_nsec / 1'000);
}

std::optional<FileStatus> statusAt(int directory, const char* path, Links links) {
    const int flags = AT_NO_AUTOMOUNT | (links == Links::keep ? AT_SYMLINK_NOFOLLOW : 0);
    constexpr unsigned wanted = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    struct statx found = {};
    if (statx(directory, path, flags, wanted, &found) != 0) {
        return std::nullopt;
    }
    FileStatus status;
    status.type = typeOfMode(found.stx_mode);
    status.size = found.stx_size;
    status.modified = timestamp(found.stx_mtime);
    if ((found.stx_mask & STATX_BTIME) != 0) {
        status.created = timestamp(found.stx_btime);
    }
    return status;
}

EntryType typeOfEntry(int directory, const dirent& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return EntryType::regular;
    case DT_DIR:
        return EntryType::directory;
    case DT_LNK:
        return EntryType::link;
    case DT_UNKNOWN: {
        // Some file systems do not tell types in listings.
        const auto status = statusAt(directory, entry.d_name, Links::keep);
        return status ? status->type : EntryType::other;
    }
    default:
        return EntryType::other;
    }
}

class LinuxFile : public ReadableFile {
public:
    explicit LinuxFile(int descriptor) : descriptor_(descriptor) {}
    ~LinuxFile() override { close(descriptor_); }

    std::optional<std::uint64_t> size() const override {
        struct stat found = {};
        if (fstat(descriptor_, &found) != 0) {
            return std::nullopt;
        }
        return static_cast<std::uint64_t>(found.st_size);
    }

    std::optional<std::size_t> read(std::uint64_t offset, std::span<char> buffer) override {
        ssize_t count = -1;
        do {
            count = pread(descriptor_, buffer.data(), buffer.size(), static_cast<off_t>(offset));
        } while (count < 0 && errno == EINTR);
        return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
    }

private:
    int descriptor_;
};

} // namespace

bool LinuxFileSystem::list(const std::string& directory, const Visitor& visit) const {
    DIR* stream = isNameable(directory) ? opendir(directory.c_str()) : nullptr;
    if (stream == nullptr) {
        return false;
    }
    while (const dirent* entry = readdir(stream)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            visit(name, typeOfEntry(dirfd(stream), *entry));
        }
    }
    closedir(stream);
    return true;
}

std::optional<FileStatus> LinuxFileSystem::status(const std::string& path, Links links) const {
    return isNameable(path) ? statusAt(AT_FDCWD, path.c_str(), links) : std::nullopt;
}

std::unique_ptr<ReadableFile> LinuxFileSystem::open(const std::string& path) const {
    // Without O_NONBLOCK a FIFO would be waited for until somebody writes.
    const int descriptor =
        !isNameable(path) ? -1 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat found = {};
    if (fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode)) {
        close(descriptor);
        return nullptr;
    }
    return std::make_unique<LinuxFile>(descriptor);
}

bool LinuxFileSystem::isExecutableFile(const std::string& path) const {
    const std::optional<FileStatus> found = status(path, Links::follow);
    return found && found->type == EntryType::regular && access(path.c_str(), X_OK) == 0;
}

bool LinuxFileSystem::removeFile(const std::string& path) const {
    return isNameable(path) && unlink(path.c_str()) == 0;
}

} // namespace sallowmere
