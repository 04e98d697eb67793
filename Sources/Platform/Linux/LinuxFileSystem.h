// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"

namespace sallowmere {

/// The files of this machine.
class LinuxFileSystem : public FileSystem {
public:
    bool list(const std::string& directory, const Visitor& visit) const override;
    std::optional<FileStatus> status(const std::string& path, Links links) const override;
    std::unique_ptr<ReadableFile> open(const std::string& path) const override;
    bool isExecutableFile(const std::string& path) const override;
    bool removeFile(const std::string& path) const override;
};

} // namespace sallowmere
