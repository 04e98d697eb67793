// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {

namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        result.push_back(const_cast<char*>(text.c_str()));
    }
    result.push_back(nullptr);
    return result;
}

/// Starts a program with these descriptors as its standard streams, in a new process group.
pid_t spawn(const Command& command, int input, int output, int errors) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    // What started the tests may have left more open.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    if (!command.directory.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, command.directory.c_str());
    }
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    pid_t pid = -1;
    const int error =
        posix_spawn(&pid, command.program.c_str(), &actions, &attributes,
                    pointers(command.arguments).data(), pointers(command.environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + command.program);
    }
    return pid;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

/// A file without a name that closes itself and that no child inherits unasked.
class Capture {
public:
    Capture() : file_(std::tmpfile(), &std::fclose) {
        if (!file_ || fcntl(descriptor(), F_SETFD, FD_CLOEXEC) != 0) {
            throw std::runtime_error("no temporary file");
        }
    }

    int descriptor() const { return fileno(file_.get()); }

    std::string content() const {
        std::string text;
        std::array<char, 4'096> buffer{};
        std::rewind(file_.get());
        while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file_.get())) {
            text.append(buffer.data(), count);
        }
        return text;
    }

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

} // namespace

Outcome run(const Command& command) {
    const Capture nothing;
    return run(command, nothing.descriptor());
}

Outcome run(const Command& command, int input) {
    const Capture output;
    const Capture errors;
    const int status = waitFor(spawn(command, input, output.descriptor(), errors.descriptor()));
    return {WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt, output.content(),
            errors.content()};
}

ChildProcess::ChildProcess(const Command& command) {
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    pid_ = spawn(command, input[0], output[1], STDERR_FILENO);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
}

ChildProcess::~ChildProcess() {
    kill(-pid_, SIGKILL);
    waitFor(pid_);
    if (input_ >= 0) {
        close(input_);
    }
    close(output_);
}

std::string ChildProcess::readLine() {
    std::string line;
    char character = 0;
    while (read(output_, &character, 1) == 1 && character != '\n') {
        line += character;
    }
    return line;
}

void ChildProcess::finish() {
    close(input_);
    input_ = -1;
    siginfo_t ended{};
    while (waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOWAIT) < 0
           && errno == EINTR) {
    }
}

} // namespace sallowmere
