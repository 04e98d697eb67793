// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include "Platform/Linux/ProgramOutput.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace sallowmere {

LinuxProcessTable::LinuxProcessTable(std::string ps, double patience)
    : ps_(std::move(ps)), patience_(patience) {}

std::string LinuxProcessTable::listing() const {
    return outputOf(ps_, {"-axo", "pid=,ppid=,uid=,pcpu=,etime=,comm="}, patience_).value_or("");
}

std::optional<std::string> LinuxProcessTable::workingDirectory(std::int32_t pid) const {
    std::error_code error;
    const std::filesystem::path link = "/proc/" + std::to_string(pid) + "/cwd";
    const std::filesystem::path target = std::filesystem::read_symlink(link, error);
    return error || target.empty() ? std::nullopt : std::optional(target.native());
}

std::uint32_t LinuxProcessTable::userId() const {
    return getuid();
}

} // namespace sallowmere
