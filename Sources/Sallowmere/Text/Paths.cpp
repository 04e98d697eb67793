// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Paths.h"

namespace sallowmere {

namespace {

/// For both kinds of string: `slash` is the separator in their kind of character.
template <typename View, typename Char>
View lastComponent(View path, Char slash) {
    auto end = path.size();
    while (end > 1 && path[end - 1] == slash) {
        --end;
    }
    auto start = end;
    while (start > 0 && path[start - 1] != slash) {
        --start;
    }
    const bool isRoot = start == end && end > 0;
    return isRoot ? path.substr(0, 1) : path.substr(start, end - start);
}

} // namespace

std::string_view lastPathComponent(std::string_view path) {
    return lastComponent(path, '/');
}

QStringView lastPathComponent(QStringView path) {
    const std::u16string_view units(path.utf16(), static_cast<std::size_t>(path.size()));
    const std::u16string_view last = lastComponent(units, u'/');
    return {last.data(), static_cast<qsizetype>(last.size())};
}

bool hasExtension(std::string_view path, std::string_view extension) {
    const std::string_view name = lastPathComponent(path);
    return name.size() > extension.size() + 1 && name.ends_with(extension)
           && name[name.size() - extension.size() - 1] == '.';
}

std::string expandTilde(std::string_view path, std::string_view home) {
    if (path == "~" || path.starts_with("~/")) {
        return std::string(home).append(path.substr(1));
    }
    return std::string(path);
}

std::string joinPath(std::string_view directory, std::string_view name) {
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    path = directory;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
    return path;
}

} // namespace sallowmere
