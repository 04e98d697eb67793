// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Corpus.h"
#include "LineWriter.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace sallowmere {

/// A home directory that is full of generated transcripts, of which eight are listed as sessions
/// that have ended their turns; the others are too old.
class PanelHome {
public:
    static constexpr std::size_t sessions = 8;

    /// Dates the transcripts anew.
    explicit PanelHome(const std::filesystem::path& path);

    std::string path() const { return path_; }

    /// While the result lives, but for so many seconds at most, one of the sessions works: its
    /// transcript grows by a line each second. Must be called before this process has a second
    /// thread.
    std::unique_ptr<LineWriter> startWork(int seconds);

private:
    std::filesystem::path path_;
    std::vector<std::filesystem::path> transcripts_;
    Corpus corpus_;
};

} // namespace sallowmere
