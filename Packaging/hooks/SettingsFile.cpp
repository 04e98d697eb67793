// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "SettingsFile.h"

#include "UnfinishedFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace sallowmere {

namespace {

[[noreturn]] void fail(const std::string& path, const char* what) {
    throw FileError{path + ' ' + what};
}

[[noreturn]] void failWithError(const std::string& path, const char* what) {
    throw FileError{path + ' ' + what + ": " + std::strerror(errno)};
}

/// Closes itself.
class Descriptor {
public:
    explicit Descriptor(const std::string& path)
        : number_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }

    int number() const { return number_; }

private:
    int number_;
};

std::string targetOf(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
        return path;
    }
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.c_str(), nullptr),
                                                             &std::free);
    if (!target) {
        failWithError(path, "is a link that leads nowhere");
    }
    return target.get();
}

void requirePlain(const std::string& path, const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        fail(path, "is a directory");
    }
    if (!S_ISREG(status.st_mode)) {
        fail(path, "is no plain file");
    }
}

std::string readAll(int descriptor, const std::string& path) {
    std::string text;
    std::vector<char> buffer(65'536);
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count == 0) {
            return text;
        }
        if (count < 0 && errno != EINTR) {
            failWithError(path, "cannot be read");
        }
        text.append(buffer.data(), count < 0 ? 0U : static_cast<std::size_t>(count));
        if (text.size() > SettingsFile::largest) {
            fail(path, "is larger than 16 MiB");
        }
    }
}

/// Absent when there is no such file.
std::optional<std::string> readFile(const std::string& path, struct stat& status) {
    const Descriptor file(path);
    if (file.number() < 0 && errno == ENOENT) {
        return std::nullopt;
    }
    if (file.number() < 0 || fstat(file.number(), &status) != 0) {
        failWithError(path, "cannot be read");
    }
    requirePlain(path, status);
    return readAll(file.number(), path);
}

bool isSameFile(const struct stat& left, const struct stat& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino
           && left.st_mode == right.st_mode && left.st_uid == right.st_uid
           && left.st_gid == right.st_gid;
}

} // namespace

SettingsFile::SettingsFile(std::string path)
    : path_(std::move(path)), target_(targetOf(path_)), text_(readFile(target_, status_)) {}

void SettingsFile::requireWritable() const {
    if (!text_) {
        return;
    }
    if (faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) {
        failWithError(path_, "may not be written");
    }
    if (status_.st_nlink > 1) {
        fail(path_, "has a second name (a hard link), which would keep the old text");
    }
}

void SettingsFile::requireUnchanged() const {
    struct stat status {};
    const std::string target = targetOf(path_);
    if (target != target_ || readFile(target, status) != text_ || !isSameFile(status, status_)) {
        fail(path_, "was changed by somebody else meanwhile; nothing was written");
    }
}

void SettingsFile::replace(std::string_view text) const {
    requireWritable();
    UnfinishedFile unfinished(target_);
    if (text_) {
        unfinished.takeModeAndOwner(status_);
    }
    unfinished.write(text);
    requireUnchanged();
    unfinished.finish(text_ ? UnfinishedFile::Replaces::yes : UnfinishedFile::Replaces::no);
}

void SettingsFile::remove() const {
    requireUnchanged();
    if (unlink(path_.c_str()) != 0) {
        failWithError(path_, "cannot be removed");
    }
}

} // namespace sallowmere
