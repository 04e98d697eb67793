// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/FakeFileSystem.h"

#include <algorithm>

namespace sallowmere {

class FakeFileSystem::OpenFile : public ReadableFile {
public:
    OpenFile(const File& file, std::uint64_t& bytesRead) : file_(file), bytesRead_(bytesRead) {}

    std::optional<std::uint64_t> size() const override {
        return file_.sizeKnown ? std::optional<std::uint64_t>(file_.content.size()) : std::nullopt;
    }

    std::optional<std::size_t> read(std::uint64_t offset, std::span<char> buffer) override {
        if (offset >= file_.failsAt) {
            return std::nullopt;
        }
        if (offset >= file_.content.size()) {
            return 0;
        }
        const std::size_t count =
            std::min({buffer.size(), file_.content.size() - offset, file_.readLimit});
        file_.content.copy(buffer.data(), count, offset);
        bytesRead_ += count;
        return count;
    }

private:
    const File& file_;
    std::uint64_t& bytesRead_;
};

FakeFileSystem::File& FakeFileSystem::addFile(const std::string& path, std::string content,
                                              Timestamp modified) {
    File& file = entries_[path];
    file = File{};
    file.content = std::move(content);
    file.modified = modified;
    return file;
}

bool FakeFileSystem::list(const std::string& directory, const Visitor& visit) const {
    listed_.push_back(directory);
    const std::string target = resolved(directory);
    const std::string prefix = target + '/';
    std::map<std::string, EntryType> found;
    const auto note = [&](const std::string& path, EntryType type) {
        if (!path.starts_with(prefix)) {
            return;
        }
        const std::string rest = path.substr(prefix.size());
        const std::size_t slash = rest.find('/');
        found[rest.substr(0, slash)] = slash == std::string::npos ? type : EntryType::directory;
    };
    for (const auto& [path, file] : entries_) {
        note(path, file.type);
    }
    for (const auto& [path, linkTarget] : links_) {
        note(path, EntryType::link);
    }
    for (const std::string& path : directories_) {
        note(path, EntryType::directory);
    }
    if (unlistable_.contains(directory) || target.empty()
        || (found.empty() && !directories_.contains(target))) {
        return false;
    }
    for (const auto& [name, type] : found) {
        visit(name, type);
    }
    return true;
}

std::optional<FileStatus> FakeFileSystem::status(const std::string& path, Links links) const {
    if (links == Links::keep && links_.contains(path)) {
        return FileStatus{EntryType::link, 0, {}, std::nullopt};
    }
    if (directories_.contains(resolved(path))) {
        return FileStatus{EntryType::directory, 0, {}, std::nullopt};
    }
    const auto entry = entries_.find(resolved(path));
    if (entry == entries_.end()) {
        return std::nullopt;
    }
    const File& file = entry->second;
    if (!file.statusKnown) {
        return std::nullopt;
    }
    return FileStatus{file.type, file.content.size(), file.modified, file.created};
}

std::unique_ptr<ReadableFile> FakeFileSystem::open(const std::string& path) const {
    opened_.push_back(path);
    const auto entry = entries_.find(resolved(path));
    if (entry == entries_.end() || !entry->second.readable
        || entry->second.type != EntryType::regular) {
        return nullptr;
    }
    return std::make_unique<OpenFile>(entry->second, bytesRead_);
}

bool FakeFileSystem::isExecutableFile(const std::string& path) const {
    const auto entry = entries_.find(resolved(path));
    return entry != entries_.end() && entry->second.executable
           && entry->second.type == EntryType::regular;
}

bool FakeFileSystem::removeFile(const std::string& path) const {
    removed_.push_back(path);
    if (links_.erase(path) != 0) {
        return true;
    }
    const auto entry = entries_.find(resolved(path));
    if (entry == entries_.end() || !entry->second.removable
        || entry->second.type == EntryType::directory) {
        return false;
    }
    entries_.erase(entry);
    return true;
}

void FakeFileSystem::forget() {
    opened_.clear();
    listed_.clear();
    removed_.clear();
    bytesRead_ = 0;
}

std::string FakeFileSystem::resolved(const std::string& path) const {
    for (const auto& [link, target] : links_) {
        if (path == link || path.starts_with(link + '/')) {
            return resolved(target + path.substr(link.size()));
        }
    }
    return path;
}

} // namespace sallowmere
