// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include <sys/stat.h>

namespace sallowmere {

/// A file on its way to its name, beside it, for its user alone. It is removed unless it gets
/// there.
///
/// What fails throws `FileError`.
class UnfinishedFile {
public:
    enum class Replaces { no, yes };

    explicit UnfinishedFile(std::string path);
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    ~UnfinishedFile();

    void takeModeAndOwner(const struct stat& status) const;
    void write(std::string_view text) const;

    /// Gives it its name, when all of it is on the disk. If it `Replaces::no` other file there may
    /// be none.
    void finish(Replaces replaces);

private:
    [[noreturn]] void fail(const char* what) const;

    std::string path_;
    std::string unfinishedPath_;
    int descriptor_;
};

} // namespace sallowmere
