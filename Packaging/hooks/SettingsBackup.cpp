// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "SettingsBackup.h"

#include "SettingsFile.h"
#include "UnfinishedFile.h"

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace sallowmere {

namespace {

constexpr std::string_view withDirectory = "The hook made this directory and settings.json.\n";
constexpr std::string_view fileAlone = "The hook made settings.json.\n";

void writeNew(const std::string& path, std::string_view text) {
    UnfinishedFile file(path);
    file.write(text);
    file.finish(UnfinishedFile::Replaces::yes);
}

} // namespace

SettingsBackup::SettingsBackup(const std::string& path)
    : copy_(path + ".sallowmere-backup"), nothing_(path + ".sallowmere-made") {}

std::optional<std::string> SettingsBackup::text() const {
    return SettingsFile(copy_).text();
}

bool SettingsBackup::isOfNoFile() const {
    return SettingsFile(nothing_).text().has_value();
}

bool SettingsBackup::isOfNoDirectory() const {
    return SettingsFile(nothing_).text() == withDirectory;
}

bool SettingsBackup::exists() const {
    return isOfNoFile() || text();
}

void SettingsBackup::keep(const std::string& text) const {
    const std::optional<std::string> older = this->text();
    if (older != text) {
        setAside();
        writeNew(copy_, text);
    }
    unlink(nothing_.c_str());
}

void SettingsBackup::keepNothing(bool hadDirectory) const {
    setAside();
    writeNew(nothing_, hadDirectory ? fileAlone : withDirectory);
}

void SettingsBackup::forget() const {
    unlink(copy_.c_str());
    unlink(nothing_.c_str());
}

/// Never over a copy with that number: a link is made only where nothing is.
void SettingsBackup::setAside() const {
    int number = 1;
    while (link(copy_.c_str(), (copy_ + '.' + std::to_string(number)).c_str()) != 0) {
        if (errno == ENOENT) {
            return;
        }
        if (errno != EEXIST) {
            throw FileError{copy_ + " cannot be set aside: " + std::strerror(errno)};
        }
        ++number;
    }
    unlink(copy_.c_str());
}

} // namespace sallowmere
