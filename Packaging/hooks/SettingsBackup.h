// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace sallowmere {

/// What settings were before the hook was added to them, kept beside them under names that the
/// assistant does not read.
///
/// What fails throws `FileError`.
class SettingsBackup {
public:
    /// Of the settings at `path`.
    explicit SettingsBackup(const std::string& path);

    const std::string& path() const { return copy_; }

    /// The former text, if a copy is there.
    std::optional<std::string> text() const;
    /// Whether there were no settings, and not even their directory.
    bool isOfNoFile() const;
    bool isOfNoDirectory() const;
    bool exists() const;

    /// Keeps a text. Another copy that is still there gets a number behind its name.
    void keep(const std::string& text) const;
    /// Keeps that there was no file, nor its directory.
    void keepNothing(bool hadDirectory) const;

    /// Forgets what is kept, copies with a number aside.
    void forget() const;

private:
    void setAside() const;

    std::string copy_;
    std::string nothing_;
};

} // namespace sallowmere
