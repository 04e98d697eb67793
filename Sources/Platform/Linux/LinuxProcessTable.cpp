// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include <QProcess>

#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace sallowmere {

std::string LinuxProcessTable::listing() const {
    QProcess ps;
    ps.setStandardInputFile(QProcess::nullDevice());
    ps.setStandardErrorFile(QProcess::nullDevice());
    ps.start(QStringLiteral("/bin/ps"),
             {QStringLiteral("-axo"), QStringLiteral("pid=,ppid=,uid=,pcpu=,etime=,comm=")},
             QIODevice::ReadOnly);
    ps.waitForFinished(-1);
    return ps.readAllStandardOutput().toStdString();
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
