// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <sys/types.h>

namespace sallowmere {

/// Another process that appends lines to a file, one by one at even intervals, and tells when it
/// began to append each.
class LineWriter {
public:
    /// Starts to write at once. Must be called before this process has a second thread.
    LineWriter(const std::string& path, const std::vector<std::string>& lines, double perSecond);
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;
    /// Ends the writer.
    ~LineWriter();

    /// Milliseconds since line `index`, counted from 0, began to be appended.
    double age(std::size_t index) const;

private:
    /// Nanoseconds for each line, in memory that both processes see.
    std::span<std::atomic<std::int64_t>> begun_;
    pid_t pid_;
};

} // namespace sallowmere
