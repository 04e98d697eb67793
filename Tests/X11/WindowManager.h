// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XClient.h"
#include "X11/XServer.h"

#include <memory>
#include <string>

namespace sallowmere {

/// A real window manager on an X server.
class WindowManager {
public:
    enum class Kind { openbox, xfwm4, i3, kwin, mutter };

    /// The programs that it needs.
    static std::vector<std::string> programs(Kind kind);
    static std::string name(Kind kind);

    /// Waits until it manages the windows there.
    WindowManager(Kind kind, const XServer& server, XClient& client);
    /// It must not be stopped when destroyed.
    ~WindowManager() = default;
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

    /// Shows another workspace, one that nothing is on, and waits until it is shown.
    void showEmptyWorkspace(const XServer& server, XClient& client) const;

    /// It does not do anything until it goes on.
    void stop();
    void goOn();
    /// Ends it as a crash would.
    void kill();

private:
    void start(Kind kind, const XServer& server);
    void startXfwm4(const XServer& server);
    void startI3(const XServer& server);
    void startKwin(const XServer& server);
    /// With a session bus of its own.
    void startOnBus(const XServer& server, const std::vector<std::string>& programAndArguments,
                    const std::vector<std::string>& variables);

    Kind kind_;
    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace sallowmere
