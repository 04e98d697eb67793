// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UnfinishedFile.h"

#include "SettingsFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// Lest a name be lost when the machine stops. Not every file system can do it, and none has to.
void syncDirectory(const std::string& path) {
    const std::string directory = path.substr(0, path.rfind('/') + 1);
    const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace

UnfinishedFile::UnfinishedFile(std::string path)
    : path_(std::move(path)), unfinishedPath_(path_ + ".sallowmere-XXXXXX"),
      descriptor_(mkostemp(unfinishedPath_.data(), O_CLOEXEC)) {
    if (descriptor_ < 0) {
        throw FileError{path_ + " cannot be written: " + std::strerror(errno)};
    }
}

UnfinishedFile::~UnfinishedFile() {
    close(descriptor_);
    unlink(unfinishedPath_.c_str());
}

void UnfinishedFile::takeModeAndOwner(const struct stat& status) const {
    // The mode last: whoever gives a file away loses what special bits it has.
    if (fchown(descriptor_, status.st_uid, status.st_gid) != 0
        || fchmod(descriptor_, status.st_mode & 07777U) != 0) {
        fail("cannot keep its owner and mode");
    }
}

void UnfinishedFile::write(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor_, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            fail("cannot be written");
        }
        text.remove_prefix(count < 0 ? 0U : static_cast<std::size_t>(count));
    }
    if (fsync(descriptor_) != 0) {
        fail("cannot be written");
    }
}

void UnfinishedFile::finish(Replaces replaces) {
    const char* from = unfinishedPath_.c_str();
    const int failed =
        replaces == Replaces::yes ? rename(from, path_.c_str()) : link(from, path_.c_str());
    if (failed != 0) {
        fail("cannot be written");
    }
    syncDirectory(path_);
}

void UnfinishedFile::fail(const char* what) const {
    throw FileError{path_ + ' ' + what + ": " + std::strerror(errno)};
}

} // namespace sallowmere
