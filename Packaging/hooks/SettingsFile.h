// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace sallowmere {

/// A file as it was when it was read. Whoever changes it since then is not overwritten.
///
/// What fails throws `FileError`.
class SettingsFile {
public:
    /// Bytes. A larger file is not read.
    static constexpr std::size_t largest = 16'777'216;

    /// Reads it, through links. A file that is not there is no failure, unless a link leads to it;
    /// a directory, a device and a file that is too large are.
    explicit SettingsFile(std::string path);

    const std::string& path() const { return path_; }
    /// Whether it is reached through a link.
    bool isLink() const { return target_ != path_; }
    /// Absent when there is no file.
    const std::optional<std::string>& text() const { return text_; }

    /// Fails unless it may be changed: by its mode, and because it has no other name that would
    /// keep the old text.
    void requireWritable() const;

    /// Puts the text in its place: whole or not at all, with its mode and its owner, and through
    /// links, which stay. A file that was not there is made for its user alone. Once.
    void replace(std::string_view text) const;

    /// Removes it; a link itself.
    void remove() const;

private:
    void requireUnchanged() const;

    std::string path_;
    /// Where links lead.
    std::string target_;
    /// What was read, and of which file.
    struct stat status_ {};
    std::optional<std::string> text_;
};

/// What could not be done with a file, in words for people.
struct FileError {
    std::string reason;
};

} // namespace sallowmere
