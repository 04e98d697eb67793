// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Usage/Sample.h"

#include <QByteArrayView>
#include <QSet>

#include <cstdint>
#include <functional>
#include <map>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sallowmere {

/// The message ids met in one file. Ids live in one arena, side by side: there are many and they
/// all go at once.
class MessageIds {
public:
    /// The id's own copy, valid as long as this set; absent when the id was already there.
    std::optional<std::string_view> insert(std::string_view id);
    bool contains(std::string_view id) const { return ids_.contains(QByteArrayView(id)); }

private:
    std::pmr::monotonic_buffer_resource arena_;
    QSet<QByteArrayView> ids_;
};

/// How far one transcript has been read and what was found in it. Its samples' texts live in it,
/// so it stays where it is.
struct FileState {
    explicit FileState(Timestamp modifiedAt) : modified(modifiedAt) {}
    FileState(const FileState&) = delete;
    FileState& operator=(const FileState&) = delete;

    /// The model's name, lower-cased, in a copy that lives as long as this state.
    std::string_view intern(std::string_view model);

    /// Last modification as last seen.
    Timestamp modified;
    /// Bytes consumed so far.
    std::uint64_t offset = 0;
    /// Messages already turned into samples.
    MessageIds seenIds;
    /// In the order of their lines.
    std::vector<Sample> samples;
    /// What follows the last line feed read so far.
    std::string carried;
    /// Whether the unfinished line is too long to be looked at, and what was read of it is gone.
    bool skipsLine = false;

private:
    /// Lower-cased names by name as written.
    std::map<std::string, std::string, std::less<>> models_;
};

/// By path.
using FileStates = std::unordered_map<std::string, FileState>;

} // namespace sallowmere
