// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Settings/PrivateFiles.h"

#include <filesystem>
#include <system_error>

namespace sallowmere::PrivateFiles {

namespace {

using std::filesystem::perms;

void createDirectory(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::create_directory(path, ignored)) {
        std::filesystem::permissions(path, perms::owner_all, ignored);
    }
}

} // namespace

void createDirectories(const std::string& path) {
    std::filesystem::path soFar;
    for (const std::filesystem::path& component : std::filesystem::path(path)) {
        soFar /= component;
        createDirectory(soFar);
    }
}

void makePrivate(const std::string& path) {
    std::error_code ignored;
    std::filesystem::permissions(path, perms::owner_read | perms::owner_write, ignored);
}

} // namespace sallowmere::PrivateFiles
