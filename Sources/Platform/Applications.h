// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// An application that has windows on this desktop, known by the process that owns them.
struct RunningApplication {
    std::int32_t pid = 0;

    bool operator==(const RunningApplication&) const = default;
};

struct ApplicationWindow {
    /// The window system's own number of it.
    std::uint64_t id = 0;
    /// UTF-8; absent when it has none.
    std::optional<std::string> title;

    bool operator==(const ApplicationWindow&) const = default;
};

/// The other applications on this desktop and their windows. Each call asks anew; an application
/// or window that has gone meanwhile is passed over in silence. Main thread; nothing throws.
class Applications {
public:
    Applications() = default;
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;
    virtual ~Applications() = default;

    /// The application of a process: that process itself when it owns windows, else its nearest
    /// ancestor that does (an editor's terminal runs in a helper process). Absent when none does.
    virtual std::optional<RunningApplication> ofProcess(std::int32_t pid) = 0;

    /// The running application with a given identifier; the one whose window lies in front when
    /// there are several. Understood are the application ids and window classes of this desktop
    /// and the identifiers of the terminals that the settings name by default.
    virtual std::optional<RunningApplication> withIdentifier(std::string_view identifier) = 0;

    /// Brings the application to the front: the frontmost of its windows gets the keyboard, also
    /// when it was minimised or is on another desktop.
    virtual void activate(RunningApplication application) = 0;

    /// Its windows, the frontmost first.
    virtual std::vector<ApplicationWindow> windows(RunningApplication application) = 0;

    /// Raises one window above the application's others and gives it the keyboard.
    virtual void raise(const ApplicationWindow& window) = 0;

    /// Whether what is typed now goes to a window of this application.
    virtual bool hasKeyboard(RunningApplication application) = 0;
};

} // namespace sallowmere
