// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Platform/ProgramRunner.h"
#include "Platform/WorkQueue.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Settings/Settings.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// Runs the assistant headlessly on a fork of a session.
namespace PromptRunner {

/// Full path of the assistant's executable: the user's own setting when it names an executable
/// file, else the first of the usual places. The search path of the environment is not consulted.
std::optional<std::string> resolveClaudeBinary(const Settings& settings, const FileSystem& files,
                                               const std::string& home);

/// Arguments of one run. The prompt comes after "--", so that it is never taken as an option.
QStringList buildArguments(const QString& prompt, const QString& sessionId,
                           const QString& permissionMode);

/// What runs get of `inherited`, NAME=VALUE each: everything, but a PATH that begins with the
/// directory of the assistant's executable and the places where people install what it calls.
std::vector<std::string> environment(const std::string& binary, const std::string& home,
                                     const std::vector<std::string>& inherited);

/// How much of a run's standard error is kept, in bytes, and how much of that is reported, in
/// characters; both count from the end.
inline constexpr std::size_t keptErrorBytes = 65'536;
inline constexpr qsizetype reportedErrorCharacters = 200;

/// Takes what went wrong, for people, or nothing when the run succeeded.
using Completion = std::function<void(const std::optional<QString>&)>;

/// What a run is started with. The references must outlive what was posted to the queues.
struct Services {
    const FileSystem& files;
    ProgramRunner& programs;
    /// The user's home directory.
    std::string home;
    /// Where the assistant and the session's directory are looked for: on a file system that hangs
    /// it waits, and so do further prompts.
    WorkQueue& fileQueue;
    /// The main thread's.
    WorkQueue& mainQueue;
};

/// Starts the assistant on a fork of `session` with a prompt, in the session's working directory if
/// that still exists; it writes a transcript like any other. `completion` is called once, on the
/// main thread, when the run could not be started or has ended. The run is never stopped or timed
/// out, and goes on when this program ends first. Returns before any file is looked for. Main
/// thread.
void send(const QString& prompt, const SessionInfo& session, const Settings& settings,
          const Services& services, const Completion& completion);

} // namespace PromptRunner

} // namespace sallowmere
