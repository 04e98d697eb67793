// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <string>
#include <string_view>

namespace sallowmere {

/// The last component of a path, trailing slashes aside; "/" for the root, empty for no path.
std::string_view lastPathComponent(std::string_view path);
QStringView lastPathComponent(QStringView path);

/// Whether the last component ends in a full stop and `extension` and has something before it.
bool hasExtension(std::string_view path, std::string_view extension);

/// Replaces a `~` that stands alone or before a slash by the home directory.
std::string expandTilde(std::string_view path, std::string_view home);

/// `directory` and `name` with one slash between them.
std::string joinPath(std::string_view directory, std::string_view name);

} // namespace sallowmere
