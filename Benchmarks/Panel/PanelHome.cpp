// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/PanelHome.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>

namespace sallowmere {

namespace fs = std::filesystem;

namespace {

void setAge(const fs::path& path, std::size_t minutes) {
    const timespec then{std::time(nullptr) - static_cast<std::time_t>(minutes * 60), 0};
    const std::array<timespec, 2> times{then, then};
    utimensat(AT_FDCWD, path.c_str(), times.data(), 0);
}

} // namespace

PanelHome::PanelHome(const fs::path& path) : path_(fs::absolute(path)) {
    for (const auto& entry : fs::recursive_directory_iterator(path_ / ".claude/projects")) {
        if (entry.is_regular_file()) {
            transcripts_.push_back(entry.path());
        }
    }
    if (transcripts_.size() < sessions) {
        throw std::runtime_error("too few transcripts in " + path_.string());
    }
    std::sort(transcripts_.begin(), transcripts_.end());
    for (std::size_t i = 0; i < transcripts_.size(); ++i) {
        // Beyond 90 seconds a turn counts as ended, beyond 12 hours a session is not listed.
        setAge(transcripts_[i], i < sessions ? 3 + i : 900 + 20 * i);
    }
}

std::unique_ptr<LineWriter> PanelHome::startWork(int seconds) {
    std::vector<std::string> lines;
    for (int i = 0; i < seconds; ++i) {
        lines.push_back(corpus_.textMessage("line " + std::to_string(i) + ' ', 1'000));
    }
    return std::make_unique<LineWriter>(transcripts_.front(), lines, 1);
}

} // namespace sallowmere
