// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSwitch.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxUser.h"
#include "Sallowmere/Text/Paths.h"
#include "SettingsFile.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

using namespace sallowmere;

namespace {

enum Status { done = 0, failed = 1, wrongUsage = 2, notInstalled = 3 };

constexpr std::string_view usage =
    R"(usage: sallowmere-hook install   add the hook to the assistant's settings
       sallowmere-hook remove    take it out again
       sallowmere-hook status    tell whether it is there
       sallowmere-hook --help    print this

The settings are ~/.claude/settings.json. Whatever else stands there stays as it is.

Exit status: 0 done, or installed; 1 refused or failed, nothing was changed; 2 wrong usage;
3 status: not installed, or not for all events.
)";

std::optional<std::string> programInPath() {
    const char* variable = std::getenv("PATH");
    std::string_view path = variable != nullptr ? variable : "";
    while (!path.empty()) {
        const std::size_t end = std::min(path.find(':'), path.size());
        std::string program = joinPath(path.substr(0, end), "sallowmere-notify");
        if (end > 0 && LinuxFileSystem().isExecutableFile(program)) {
            return program;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return std::nullopt;
}

void say(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        std::cout << line << '\n';
    }
}

Status install(const HookSwitch& hook) {
    say(hook.install());
    if (!programInPath()) {
        std::cerr << "sallowmere-hook: there is no sallowmere-notify in your PATH; the hook does "
                     "nothing until there is\n";
    }
    return done;
}

Status tellStatus(const HookSwitch& hook) {
    const HookSwitch::Status status = hook.status();
    say(status.lines);
    const std::optional<std::string> program = programInPath();
    say({"sallowmere-notify: " + program.value_or("not found in PATH")});
    return status.isInstalled ? done : notInstalled;
}

Status runCommand(std::string_view command) {
    if (command == "--help") {
        std::cout << usage;
        return done;
    }
    if (command != "install" && command != "remove" && command != "status") {
        std::cerr << usage;
        return wrongUsage;
    }
    const std::string home = homeDirectory();
    if (!home.starts_with('/')) {
        throw FileError{"there is no home directory"};
    }
    const HookSwitch hook(home);
    if (command == "remove") {
        say(hook.remove());
        return done;
    }
    return command == "install" ? install(hook) : tellStatus(hook);
}

} // namespace

int main(int count, char** arguments) {
    // A mask may forbid the user too what nobody else can do with these files anyway.
    umask(S_IRWXG | S_IRWXO);
    // Beyond a limit on the size of files, a write fails instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return runCommand(count == 2 ? arguments[1] : "");
    } catch (const FileError& error) {
        std::cerr << "sallowmere-hook: " << error.reason << '\n';
    } catch (const std::exception& error) {
        std::cerr << "sallowmere-hook: " << error.what() << '\n';
    }
    return failed;
}
