// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/PromptRunner.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Paths.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace sallowmere::PromptRunner {

namespace {

constexpr std::string_view pathVariable = "PATH=";

/// Against the directory that this program runs in, as the file system takes it; runs have another.
std::optional<std::string> fullPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? std::nullopt : std::optional(full.native());
}

std::string directoryOf(const std::string& path) {
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

std::optional<QString> outcome(const ProgramEnd& end) {
    if (end.status == 0) {
        return std::nullopt;
    }
    const QString text = decodeUtf8(end.errors).trimmed();
    return text.isEmpty() ? QStringLiteral("claude exited with status %1").arg(end.status)
                          : lastCharacters(text, reportedErrorCharacters).toString();
}

/// A prompt on its way.
struct Sending {
    /// What is looked for in the file system.
    struct Found {
        std::optional<std::string> binary;
        /// Where the session worked, if that exists.
        std::optional<std::string> directory;
    };

    QString prompt;
    SessionInfo session;
    Settings settings;
    Services services;
    Completion completion;

    Found find() const {
        Found found{resolveClaudeBinary(settings, services.files, services.home), std::nullopt};
        if (session.cwd && session.cwd->startsWith(u'/')
            && services.files.status(session.cwd->toStdString(), Links::follow)) {
            found.directory = session.cwd->toStdString();
        }
        return found;
    }

    void start(const Found& found) const {
        if (!found.binary) {
            completion(
                QStringLiteral("claude binary not found — set \"claudeBinary\" in settings.json"));
            return;
        }
        // It would be taken for an option, whatever that one allows.
        if (session.sessionId.startsWith(u'-')) {
            completion(QStringLiteral("claude cannot resume a session with such an id"));
            return;
        }
        const std::optional<std::string> failure = services.programs.start(
            program(*found.binary, found.directory),
            [completion = completion](const ProgramEnd& end) { completion(outcome(end)); });
        if (failure) {
            completion(QStringLiteral("failed to launch claude: ") + decodeUtf8(*failure));
        }
    }

private:
    Program program(const std::string& binary, const std::optional<std::string>& directory) const {
        Program program;
        program.path = binary;
        for (const QString& argument :
             buildArguments(prompt, session.sessionId, settings.resumePermissionMode)) {
            program.arguments.push_back(argument.toStdString());
        }
        program.environment = environment(binary, services.home, services.programs.environment());
        program.directory = directory;
        program.keptErrorBytes = keptErrorBytes;
        return program;
    }
};

} // namespace

std::optional<std::string> resolveClaudeBinary(const Settings& settings, const FileSystem& files,
                                               const std::string& home) {
    constexpr std::array<std::string_view, 5> places{
        "~/.local/bin/claude",    "/opt/homebrew/bin/claude", "/usr/local/bin/claude",
        "~/.claude/local/claude", "~/.bun/bin/claude",
    };
    if (settings.claudeBinary) {
        const std::string chosen = expandTilde(*settings.claudeBinary, home);
        std::optional<std::string> path = fullPath(chosen);
        if (path && files.isExecutableFile(chosen)) {
            return path;
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

std::vector<std::string> environment(const std::string& binary, const std::string& home,
                                     const std::vector<std::string>& inherited) {
    const auto isPath = [](const std::string& variable) {
        return variable.starts_with(pathVariable);
    };
    const auto path = std::find_if(inherited.begin(), inherited.end(), isPath);
    std::vector<std::string> variables;
    std::remove_copy_if(inherited.begin(), inherited.end(), std::back_inserter(variables), isPath);
    variables.push_back(
        std::string(pathVariable) + directoryOf(binary)
        + ":/usr/local/bin:/opt/homebrew/bin:" + expandTilde("~/.local/bin", home) + ':'
        + (path == inherited.end() ? "/usr/bin:/bin" : path->substr(pathVariable.size())));
    return variables;
}

void send(const QString& prompt, const SessionInfo& session, const Settings& settings,
          const Services& services, const Completion& completion) {
    services.fileQueue.post([sending = Sending{prompt, session, settings, services, completion}] {
        sending.services.mainQueue.post(
            [sending, found = sending.find()] { sending.start(found); });
    });
}

} // namespace sallowmere::PromptRunner
