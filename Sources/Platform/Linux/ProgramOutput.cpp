// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/ProgramOutput.h"

#include "Platform/Linux/Spawning.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <limits>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

Clock::time_point after(double seconds) {
    return Clock::now()
           + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

/// Waits until there is something to read, or the end. False when the time is over, also when
/// there would be something.
bool isReadyBefore(const Descriptor& descriptor, Clock::time_point deadline) {
    while (true) {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now());
        if (left <= Milliseconds::zero()) {
            return false;
        }
        pollfd asked{descriptor.get(), POLLIN, 0};
        const int ready = poll(&asked, 1,
                               static_cast<int>(std::min<Milliseconds::rep>(
                                   left.count(), std::numeric_limits<int>::max())));
        if (ready > 0) {
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
    }
}

std::optional<std::string> readToEnd(const Descriptor& pipe, Clock::time_point deadline) {
    std::string content;
    std::array<char, 65'536> buffer{};
    while (isReadyBefore(pipe, deadline)) {
        const ssize_t count = read(pipe.get(), buffer.data(), buffer.size());
        if (count == 0) {
            return content;
        }
        if (count > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

/// Starts a program that prints into `output`; absent when it cannot be started.
std::optional<pid_t> start(const std::string& program, const std::vector<std::string>& arguments,
                           const Descriptor& output) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    FileActions actions;
    // First: where this program has no standard streams, the pipe may be in their places.
    posix_spawn_file_actions_adddup2(actions.get(), output.get(), STDOUT_FILENO);
    posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(actions.get(), STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    const int error = posix_spawn(&pid, program.c_str(), actions.get(), nullptr,
                                  pointersTo(words).data(), environ);
    return error == 0 ? std::optional(pid) : std::nullopt;
}

/// Reaps a child that has ended, or kills it first. Gives up on one that does not go, because the
/// kernel itself holds it up; it then stays until this program ends.
void end(pid_t pid, const Descriptor& ended, bool hasEnded) {
    constexpr double longestDeath = 5.0;
    if (!hasEnded) {
        kill(pid, SIGKILL);
        isReadyBefore(ended, after(longestDeath));
    }
    while (waitpid(pid, nullptr, hasEnded ? 0 : WNOHANG) < 0 && errno == EINTR) {
    }
}

} // namespace

std::optional<std::string> outputOf(const std::string& program,
                                    const std::vector<std::string>& arguments, double patience) {
    const Clock::time_point deadline = after(patience);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    const Descriptor here(ends[0]);
    Descriptor there(ends[1]);
    const std::optional<pid_t> pid = start(program, arguments, there);
    there = Descriptor();
    if (!pid) {
        return std::nullopt;
    }
    const Descriptor ended = openProcess(*pid);
    std::optional<std::string> output = readToEnd(here, deadline);
    // Where the system gives no such descriptor, the end of the output has to do.
    const bool hasEnded = output && (!ended || isReadyBefore(ended, deadline));
    end(*pid, ended, hasEnded);
    return hasEnded ? output : std::nullopt;
}

} // namespace sallowmere
