// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/FileSystem.h"

#include <algorithm>

namespace sallowmere {

std::optional<std::string> readToEnd(ReadableFile& file, std::uint64_t offset, std::uint64_t most) {
    constexpr std::size_t leastStep = 4'096;
    constexpr std::size_t mostStep = 65'536;
    std::string content;
    for (;;) {
        const std::size_t before = content.size();
        // Many files are small, and room costs its clearing.
        const std::size_t step = std::clamp(before, leastStep, mostStep);
        content.resize(before + step);
        const std::optional<std::size_t> count =
            file.read(offset + before, {content.data() + before, step});
        if (!count) {
            return std::nullopt;
        }
        content.resize(before + *count);
        if (content.size() > most) {
            return std::nullopt;
        }
        if (*count == 0) {
            return content;
        }
    }
}

std::optional<std::string> readWholeFile(const FileSystem& files, const std::string& path) {
    const std::unique_ptr<ReadableFile> file = files.open(path);
    return file ? readToEnd(*file, 0) : std::nullopt;
}

} // namespace sallowmere
