// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/ChildProgram.h"

#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {

namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (const std::string& text : texts) {
        result.push_back(const_cast<char*>(text.c_str()));
    }
    result.push_back(nullptr);
    return result;
}

[[noreturn]] void become(const ChildProgram::Command& command, char* const* arguments,
                         char* const* environment) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int log = open(command.log.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(null, STDIN_FILENO);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    if (command.inherited >= 0) {
        fcntl(command.inherited, F_SETFD, 0);
    }
    execve(arguments[0], arguments, environment);
    _exit(127);
}

} // namespace

ChildProgram::ChildProgram(const Command& command) {
    if (access(command.arguments.front().c_str(), X_OK) != 0) {
        throw std::runtime_error("not installed: " + command.arguments.front());
    }
    const std::vector<char*> arguments = pointers(command.arguments);
    const std::vector<char*> environment = pointers(command.environment);
    startedAt_ = std::chrono::steady_clock::now();
    pid_ = fork();
    if (pid_ == 0) {
        become(command, arguments.data(), environment.data());
    }
    if (pid_ < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
}

ChildProgram::~ChildProgram() {
    constexpr std::chrono::seconds patience(10);
    kill(pid_, SIGTERM);
    if (!hasEnded(patience)) {
        kill(pid_, SIGKILL);
    }
    waitpid(pid_, nullptr, 0);
}

bool ChildProgram::hasEnded(std::chrono::milliseconds patience) const {
    const int process = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
    pollfd ending{process, POLLIN, 0};
    const bool ended = poll(&ending, 1, static_cast<int>(patience.count())) == 1;
    close(process);
    return ended;
}

} // namespace sallowmere
