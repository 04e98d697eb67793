// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sallowmere {

/// A new directory that serves as a home directory; removed with everything in it when destroyed.
class TemporaryHome {
public:
    /// `name` is the last component of its path.
    explicit TemporaryHome(const std::string& name = "home");
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    ~TemporaryHome();

    /// Free of links, without a trailing slash.
    const std::string& path() const { return path_; }
    std::string operator/(std::string_view relative) const;

    /// Both return the full path and create the directories above.
    std::string write(std::string_view relative, std::string_view content) const;
    std::string makeDirectory(std::string_view relative) const;
    std::string makeFifo(std::string_view relative) const;
    std::string makeLink(std::string_view relative, const std::string& target) const;
    /// A shell script that may be executed.
    std::string writeProgram(std::string_view relative, std::string_view script = "") const;

    /// A finished session in the working directory `cwd`; returns the transcript's path.
    std::string addSession(std::string_view project, std::string_view title,
                           std::string_view cwd) const;

private:
    std::string root_;
    std::string path_;
};

/// Sets access and modification time; false when the file system refuses.
bool setModified(const std::string& path, std::int64_t seconds, long nanoseconds = 0);

} // namespace sallowmere
