// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSwitch.h"

#include "HookSettings.h"
#include "Sallowmere/Text/Paths.h"
#include "SettingsBackup.h"
#include "SettingsFile.h"

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/// Stops at settings that are not to be touched.
void require(const SettingsFile& file, const std::string& text,
             const std::optional<Complaint>& refusal) {
    if (refusal) {
        const TextPosition position = positionOf(text, refusal->at);
        throw FileError{file.path() + ", line " + std::to_string(position.line) + ", column "
                        + std::to_string(position.column) + ": " + refusal->reason};
    }
}

bool isDirectory(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void makeDirectory(const std::string& path) {
    if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        throw FileError{path + " cannot be made: " + std::strerror(errno)};
    }
}

/// What the first change of the settings needs around it. Undone when destroyed before the change
/// is confirmed.
class Preparation {
public:
    explicit Preparation(const std::string& directory)
        : directory_(directory), hadDirectory_(isDirectory(directory)) {
        makeDirectory(directory);
    }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;
    ~Preparation() {
        if (backup_ != nullptr) {
            backup_->forget();
        }
        if (!isConfirmed_ && !hadDirectory_) {
            rmdir(directory_.c_str());
        }
    }

    /// Keeps what the settings are.
    void keep(const SettingsBackup& backup, const SettingsFile& file) {
        if (file.text()) {
            backup.keep(*file.text());
        } else {
            backup.keepNothing(hadDirectory_);
        }
        backup_ = &backup;
    }

    void confirm() {
        backup_ = nullptr;
        isConfirmed_ = true;
    }

private:
    const std::string& directory_;
    const bool hadDirectory_;
    const SettingsBackup* backup_ = nullptr;
    bool isConfirmed_ = false;
};

} // namespace

HookSwitch::HookSwitch(const std::string& home)
    : directory_(joinPath(home, ".claude")), path_(joinPath(directory_, "settings.json")) {}

std::vector<std::string> HookSwitch::install() const {
    const SettingsFile file(path_);
    const std::string text = file.text().value_or("");
    const HookSettings::State before = HookSettings::state(text);
    const HookSettings::Outcome outcome = HookSettings::installed(text);
    require(file, text, outcome.refusal);
    if (outcome.events.empty()) {
        return {"already installed in " + path_ + "; nothing was changed"};
    }
    file.requireWritable();
    const SettingsBackup backup(path_);
    Preparation preparation(directory_);
    // Where some of our hooks are, an older copy tells what there was without them.
    if (before.present.empty() || !backup.exists()) {
        preparation.keep(backup, file);
    }
    file.replace(outcome.text);
    preparation.confirm();
    std::vector<std::string> lines{"installed in " + path_ + " for " + joined(outcome.events)};
    lines.push_back(file.text() ? "the settings as they were: " + backup.path()
                                : "there were no settings before");
    return lines;
}

std::vector<std::string> HookSwitch::remove() const {
    const SettingsFile file(path_);
    const std::string text = file.text().value_or("");
    const SettingsBackup backup(path_);
    const bool hadFile = !backup.isOfNoFile();
    const HookSettings::Outcome outcome = HookSettings::removed(text, hadFile ? backup.text() : "");
    require(file, text, outcome.refusal);
    if (outcome.events.empty()) {
        return {"not installed in " + path_ + "; nothing was changed"};
    }
    file.requireWritable();
    const bool isGone = !hadFile && !file.isLink() && outcome.text.empty();
    const bool isDirectoryGone = isGone && backup.isOfNoDirectory();
    if (isGone) {
        file.remove();
    } else {
        file.replace(outcome.text);
    }
    backup.forget();
    if (isDirectoryGone) {
        rmdir(directory_.c_str());
    }
    return {"removed from " + path_ + " for " + joined(outcome.events)
            + (isGone ? "; the file held nothing else and is gone" : "")};
}

HookSwitch::Status HookSwitch::status() const {
    const SettingsFile file(path_);
    const std::string text = file.text().value_or("");
    const HookSettings::State state = HookSettings::state(text);
    require(file, text, state.refusal);
    if (state.missing.empty()) {
        return {true, {"installed in " + path_}};
    }
    if (state.present.empty()) {
        return {false, {"not installed in " + path_}};
    }
    return {false, {"partly installed in " + path_ + "; missing: " + joined(state.missing)}};
}

} // namespace sallowmere
