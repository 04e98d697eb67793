// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Sallowmere/Settings/Settings.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>

namespace sallowmere {

/// Runs the assistant headlessly on a fork of a session.
namespace PromptRunner {

/// Path of the assistant's executable: the user's own setting when it names an executable file,
/// else the first of the usual places. The search path of the environment is not consulted.
std::optional<std::string> resolveClaudeBinary(const Settings& settings, const FileSystem& files,
                                               const std::string& home);

/// Arguments of one run. The prompt comes after "--", so that it is never taken as an option.
QStringList buildArguments(const QString& prompt, const QString& sessionId,
                           const QString& permissionMode);

} // namespace PromptRunner

} // namespace sallowmere
