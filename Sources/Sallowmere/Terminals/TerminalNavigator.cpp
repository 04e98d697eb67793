// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Terminals/TerminalNavigator.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Paths.h"

#include <algorithm>

namespace sallowmere::TerminalNavigator {

namespace {

void raiseWindowOf(const QString& cwd, RunningApplication application, Applications& applications) {
    const QString path = cwd.toLower();
    const QStringView folder = lastPathComponent(path);
    const auto shows = [&](const ApplicationWindow& window) {
        const QString title = window.title ? decodeUtf8(*window.title).toLower() : QString();
        return window.title && (title.contains(folder) || title.contains(path));
    };
    const std::vector<ApplicationWindow> windows = applications.windows(application);
    const auto found = std::find_if(windows.begin(), windows.end(), shows);
    if (found != windows.end()) {
        applications.raise(*found);
    }
}

} // namespace

bool jump(const SessionInfo& session, Applications& applications, Keystrokes& keystrokes) {
    if (!session.process || !session.process->terminalPid) {
        return false;
    }
    const auto application = applications.ofProcess(*session.process->terminalPid);
    if (!application) {
        return false;
    }
    applications.activate(*application);
    if (keystrokes.isTrusted() && session.cwd) {
        raiseWindowOf(*session.cwd, *application, applications);
    }
    return true;
}

} // namespace sallowmere::TerminalNavigator
