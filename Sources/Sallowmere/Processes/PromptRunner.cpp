// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/PromptRunner.h"

#include "Sallowmere/Text/Paths.h"

#include <array>
#include <string_view>

namespace sallowmere::PromptRunner {

std::optional<std::string> resolveClaudeBinary(const Settings& settings, const FileSystem& files,
                                               const std::string& home) {
    constexpr std::array<std::string_view, 5> places{
        "~/.local/bin/claude",    "/opt/homebrew/bin/claude", "/usr/local/bin/claude",
        "~/.claude/local/claude", "~/.bun/bin/claude",
    };
    if (settings.claudeBinary) {
        std::string chosen = expandTilde(*settings.claudeBinary, home);
        if (files.isExecutableFile(chosen)) {
            return chosen;
        }
    }
    for (const std::string_view place : places) {
        std::string path = expandTilde(place, home);
        if (files.isExecutableFile(path)) {
            return path;
        }
    }
    return std::nullopt;
}

QStringList buildArguments(const QString& prompt, const QString& sessionId,
                           const QString& permissionMode) {
    return {QStringLiteral("-p"),
            QStringLiteral("--resume"),
            sessionId,
            QStringLiteral("--fork-session"),
            QStringLiteral("--permission-mode"),
            permissionMode,
            QStringLiteral("--"),
            prompt};
}

} // namespace sallowmere::PromptRunner
