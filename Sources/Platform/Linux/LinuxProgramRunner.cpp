// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProgramRunner.h"

#include "Platform/Linux/Spawning.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// As much as a pipe holds unless told otherwise.
constexpr std::size_t pieceBytes = 65'536;

std::string failure(const std::string& path, int error) {
    return path + ": " + std::generic_category().message(error);
}

bool holdsNul(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

/// For the kernel a text ends at a NUL, and half a text is not what was asked for.
bool canBeHandedOver(const Program& program) {
    return !holdsNul(program.path) && !holdsNul(program.directory.value_or(std::string()))
           && std::none_of(program.arguments.begin(), program.arguments.end(), holdsNul)
           && std::none_of(program.environment.begin(), program.environment.end(), holdsNul);
}

/// What is ignored here stays ignored in a program that is started, and a parent that ignores the
/// end of its children is not told how they ended.
void prepareSignals() {
    struct sigaction present = {};
    std::signal(SIGPIPE, SIG_IGN);
    if (sigaction(SIGCHLD, nullptr, &present) == 0 && present.sa_handler == SIG_IGN) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

class Attributes {
public:
    Attributes() {
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
        posix_spawnattr_setsigmask(&attributes_, &none);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }

    posix_spawnattr_t* get() { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// Starts the program in `directory`, unless that is none, with `errors` as its standard error.
/// Returns an error number, or 0.
int spawn(const Program& program, const Descriptor& directory, const Descriptor& errors,
          pid_t& pid) {
    FileActions actions;
    // In this order, lest one of ours that happens to be a standard stream be closed before its
    // turn.
    if (directory) {
        posix_spawn_file_actions_addfchdir_np(actions.get(), directory.get());
    }
    posix_spawn_file_actions_adddup2(actions.get(), errors.get(), STDERR_FILENO);
    posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(actions.get(), STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    Attributes attributes;
    std::vector<std::string> arguments{program.path};
    arguments.insert(arguments.end(), program.arguments.begin(), program.arguments.end());
    return posix_spawn(&pid, program.path.c_str(), actions.get(), attributes.get(),
                       pointersTo(arguments).data(), pointersTo(program.environment).data());
}

int waitFor(pid_t pid) {
    siginfo_t end = {};
    int result = 0;
    do {
        result = waitid(P_PID, static_cast<id_t>(pid), &end, WEXITED);
    } while (result < 0 && errno == EINTR);
    return result == 0 ? end.si_status : -1;
}

} // namespace

/// A program that was started.
class LinuxProgramRunner::Run : public QObject {
public:
    /// `process` becomes readable when the program has ended, `errors` is the end of a pipe.
    Run(QObject* parent, pid_t pid, Descriptor process, Descriptor errors, std::size_t keptBytes,
        Ended ended)
        : QObject(parent), pid_(pid), process_(std::move(process)), errors_(std::move(errors)),
          keptBytes_(keptBytes), ended_(std::move(ended)),
          processNotifier_(process_.get(), QSocketNotifier::Read),
          errorNotifier_(errors_.get(), QSocketNotifier::Read) {
        connect(&processNotifier_, &QSocketNotifier::activated, this, [this] { end(); });
        connect(&errorNotifier_, &QSocketNotifier::activated, this, [this] {
            // At its end it would be readable for ever.
            errorNotifier_.setEnabled(keepErrors(pieceBytes));
        });
    }

private:
    /// Reads at most `most` bytes. False when nothing will follow.
    bool keepErrors(std::size_t most) {
        std::array<char, pieceBytes> piece;
        const ssize_t count = read(errors_.get(), piece.data(), std::min(most, piece.size()));
        if (count <= 0) {
            return count < 0 && (errno == EAGAIN || errno == EINTR);
        }
        kept_.append(piece.data(), static_cast<std::size_t>(count));
        if (kept_.size() > keptBytes_) {
            kept_.erase(0, kept_.size() - keptBytes_);
        }
        return true;
    }

    /// Takes what the program left in the pipe and does not wait for the pipe's end, for which
    /// what it started itself may keep it open.
    void keepRemainingErrors() {
        int remaining = 0;
        ioctl(errors_.get(), FIONREAD, &remaining);
        for (auto left = static_cast<std::size_t>(remaining); left > 0;) {
            const std::size_t piece = std::min(left, pieceBytes);
            if (!keepErrors(piece)) {
                return;
            }
            left -= piece;
        }
    }

    void end() {
        processNotifier_.setEnabled(false);
        errorNotifier_.setEnabled(false);
        const int status = waitFor(pid_);
        keepRemainingErrors();
        const Ended ended = std::exchange(ended_, nullptr);
        deleteLater();
        // The last thing, because it may destroy the runner.
        ended({status, std::exchange(kept_, {})});
    }

    const pid_t pid_;
    const Descriptor process_;
    const Descriptor errors_;
    const std::size_t keptBytes_;
    Ended ended_;
    std::string kept_;
    QSocketNotifier processNotifier_;
    QSocketNotifier errorNotifier_;
};

std::optional<std::string> LinuxProgramRunner::start(const Program& program, Ended ended) {
    if (!canBeHandedOver(program)) {
        return failure(program.path, EINVAL);
    }
    Descriptor directory;
    if (program.directory) {
        // With the full stop only a directory that may be entered can be opened.
        directory = Descriptor(open((*program.directory + "/.").c_str(), O_PATH | O_CLOEXEC));
        if (!directory) {
            return failure(*program.directory, errno);
        }
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return failure(program.path, errno);
    }
    Descriptor errors(ends[0]);
    Descriptor childErrors(ends[1]);
    // An event loop within another can leave a notification behind that no longer holds.
    fcntl(errors.get(), F_SETFL, O_NONBLOCK);
    prepareSignals();
    pid_t pid = -1;
    if (const int error = spawn(program, directory, childErrors, pid)) {
        return failure(program.path, error);
    }
    // Makes room for the next one.
    childErrors = Descriptor();
    Descriptor process = openProcess(pid);
    if (!process) {
        const int error = errno;
        kill(pid, SIGKILL);
        waitFor(pid);
        return failure(program.path, error);
    }
    new Run(&runs_, pid, std::move(process), std::move(errors), program.keptErrorBytes,
            std::move(ended));
    return std::nullopt;
}

std::vector<std::string> LinuxProgramRunner::environment() const {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    return variables;
}

} // namespace sallowmere
