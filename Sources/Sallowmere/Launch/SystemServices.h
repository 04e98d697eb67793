// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Desktop/CanberraSounds.h"
#include "Platform/Desktop/SecretServiceKeychain.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Linux/LinuxProgramRunner.h"
#include "Platform/Linux/LinuxWorkQueue.h"
#include "Platform/Qt/EventLoopQueue.h"
#include "Platform/Qt/QtHttpClient.h"
#include "Platform/X11/X11Applications.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"
#include "Platform/X11/X11Keystrokes.h"
#include "Sallowmere/Application/AppState.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "Sallowmere/Sounds/SoundPlayer.h"
#include "Sallowmere/Usage/UsageAPI.h"

#include <string>

namespace sallowmere {

/// Everything that the running program has of the system it runs on. Needs a `QGuiApplication`.
class SystemServices {
public:
    SystemServices();

    /// They refer to this.
    AppServices forModel();
    RefreshServices forEngine();

    X11Connection& connection() { return connection_; }
    X11Events& events() { return events_; }
    X11Keystrokes& keystrokes() { return keystrokes_; }
    EventLoopQueue& mainQueue() { return mainQueue_; }
    const std::string& home() const { return home_; }
    const LinuxFileSystem& files() const { return files_; }

private:
    void fetchOfficialUsage(double timeout, UsageAPI::Completion completion);

    const std::string home_;
    X11Connection connection_;
    X11Events events_;
    X11Applications applications_{connection_};
    X11Keystrokes keystrokes_{connection_};
    LinuxFileSystem files_;
    LinuxProcessTable processes_;
    LinuxProgramRunner programs_;
    CanberraSounds sounds_;
    SoundPlayer player_;
    QtHttpClient http_;
    SecretServiceKeychain keychain_;
    UsageAPI usageAPI_;
    EventLoopQueue mainQueue_;
    LinuxWorkQueue workQueue_{"sallowmere.refresh"};
    /// Of its own, because the keyring may wait for the user to unlock it.
    LinuxWorkQueue officialQueue_{"sallowmere.official"};
    /// Of its own, because a scan waits for ever on a file system that hangs.
    LinuxWorkQueue promptQueue_{"sallowmere.prompt"};
};

} // namespace sallowmere
