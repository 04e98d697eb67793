// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Sends a prompt as the program does and then does one of these: prompt-sender HOME SESSION WHAT
//   quit       ends at once, in good order
//   exit       ends at once without tidying up
//   wait       waits for the run, and says how it went
//   no-pidfd   the same on a kernel that cannot tell the end of a process by a descriptor
//   closed     the same without standard streams
//   full       the same with two descriptors to spare
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProgramRunner.h"
#include "Sallowmere/Processes/PromptRunner.h"
#include "Support/ImmediateQueue.h"

#include <QCoreApplication>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace sallowmere;

namespace {

/// From now on the system call fails as if there were none.
void forbidPidfds() {
    std::array<sock_filter, 4> filter{{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_pidfd_open},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | ENOSYS},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    }};
    const sock_fprog program{filter.size(), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        std::perror("prompt-sender");
        std::exit(2);
    }
}

void closeStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        close(stream);
    }
}

void limitDescriptors() {
    const int next = dup(STDIN_FILENO);
    close(next);
    const auto limit = static_cast<rlim_t>(next) + 2;
    const rlimit limits{limit, limit};
    setrlimit(RLIMIT_NOFILE, &limits);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: prompt-sender HOME SESSION WHAT\n", stderr);
        return 2;
    }
    const std::string_view what = argv[3];
    if (what == "no-pidfd") {
        forbidPidfds();
    }
    int completions = 0;
    {
        QCoreApplication application(argc, argv);
        const LinuxFileSystem files;
        LinuxProgramRunner programs;
        ImmediateQueue queue;
        SessionInfo session;
        session.sessionId = QString::fromLocal8Bit(argv[2]);
        if (what == "closed") {
            closeStreams();
        } else if (what == "full") {
            limitDescriptors();
        }
        PromptRunner::send(QStringLiteral("Hello"), session, Settings::defaults(argv[1]),
                           {files, programs, argv[1], queue, queue},
                           [&](const std::optional<QString>& error) {
                               ++completions;
                               std::printf("%s\n", error ? qPrintable(*error) : "well");
                               QCoreApplication::exit();
                           });
        if (what == "exit") {
            std::_Exit(0);
        }
        if (what != "quit" && completions == 0) {
            QCoreApplication::exec();
        }
    }
    return completions;
}
