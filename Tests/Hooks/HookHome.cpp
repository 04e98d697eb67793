// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/HookHome.h"

#include "Hooks/HookCalls.h"
#include "Platform/Linux/LinuxClock.h"
#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Support/Texts.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>

#include <sys/socket.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// No more than any socket takes before somebody reads; beyond it a file serves.
constexpr std::size_t mostToSend = 65'536;

Outcome runWithSocket(const Command& command, const std::string& input) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0
        || send(ends[0], input.data(), input.size(), MSG_NOSIGNAL | MSG_DONTWAIT)
               != static_cast<ssize_t>(input.size())
        || shutdown(ends[0], SHUT_WR) != 0) {
        throw std::runtime_error("nothing can be sent");
    }
    Outcome outcome = run(command, ends[1]);
    close(ends[0]);
    close(ends[1]);
    return outcome;
}

Outcome runWithFile(const Command& command, const std::string& input) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    if (!file || std::fwrite(input.data(), 1, input.size(), file.get()) != input.size()
        || std::fflush(file.get()) != 0) {
        throw std::runtime_error("no temporary file");
    }
    std::rewind(file.get());
    return run(command, fileno(file.get()));
}

} // namespace

Command hookCommand(const std::string& home) {
    return {SALLOWMERE_NOTIFY, {"sallowmere-notify"}, {"PATH=/usr/bin:/bin", "HOME=" + home}, {}};
}

Outcome runWithInput(const Command& command, const std::string& input) {
    return input.size() <= mostToSend ? runWithSocket(command, input) : runWithFile(command, input);
}

void expectSilence(const Outcome& outcome) {
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
}

void HookHome::call(const QJsonObject& event) const {
    callWith(hookCalls::text(event));
}

void HookHome::callWith(const std::string& input) const {
    expectSilence(runWithInput(hookCommand(home.path()), input));
}

std::string HookHome::directory() const {
    return NotificationWatcher::directory(home.path());
}

std::string HookHome::write(const std::string& name, const std::string& content) const {
    return home.write(".config/sallowmere/notifications/" + name, content);
}

void HookHome::setAge(const std::string& name, std::int64_t seconds) const {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    ASSERT_TRUE(setModified(in(name), now - seconds));
}

std::vector<PermissionRequest> HookHome::pending() const {
    return NotificationWatcher::pending(files, home.path(), linuxClock()());
}

std::vector<std::string> HookHome::shown() const {
    std::vector<std::string> result;
    for (const PermissionRequest& request : pending()) {
        result.push_back(utf8(request.sessionId) + ": " + utf8(request.message));
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::vector<std::string> HookHome::names() const {
    std::vector<std::string> result;
    files.list(directory(), [&](std::string_view name, EntryType) { result.emplace_back(name); });
    std::sort(result.begin(), result.end());
    return result;
}

std::vector<std::string> HookHome::everything() const {
    std::vector<std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
        result.push_back(entry.path().lexically_relative(home.path()).native());
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace sallowmere
