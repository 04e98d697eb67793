// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/Gate.h"
#include "System/PromptRunTest.h"
#include "System/Unprivileged.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using testing::IsSubsetOf;

class LinuxProgramRunnerTest : public PromptRunTest {
protected:
    /// Starts a shell script and waits for its end.
    ProgramEnd endOf(const std::string& commands, std::size_t keptErrorBytes) {
        std::optional<ProgramEnd> result;
        EXPECT_EQ(programs->start({"/bin/sh", {"-c", commands}, {}, {}, keptErrorBytes},
                                  [&](const ProgramEnd& end) { result = end; }),
                  std::nullopt);
        EXPECT_TRUE(EventLoop::runUntil([&] { return result.has_value(); }));
        return result.value_or(ProgramEnd());
    }
};

/// Gives a signal another effect as long as this lives.
class SignalEffect {
public:
    SignalEffect(int number, void (*effect)(int))
        : number_(number), before_(std::signal(number, effect)) {}
    SignalEffect(const SignalEffect&) = delete;
    SignalEffect& operator=(const SignalEffect&) = delete;
    ~SignalEffect() { std::signal(number_, before_); }

private:
    int number_;
    void (*before_)(int);
};

constexpr unsigned long long bitOf(int signalNumber) {
    return 1ULL << (signalNumber - 1);
}

/// In KiB, as `/proc/self/status` has it.
long memory(const std::string& name) {
    const std::string status = contentOf("/proc/self/status");
    return std::stol(status.substr(status.find(name + ':') + name.size() + 1));
}

/// Descriptors that whoever runs the tests lets every program inherit.
std::set<int> inheritableDescriptors() {
    std::set<int> found;
    for (int number = 0; number < 1'024; ++number) {
        const int flags = fcntl(number, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0) {
            found.insert(number);
        }
    }
    return found;
}

TEST_F(LinuxProgramRunnerTest, KeepsAsManyBytesOfTheErrorsAsItIsTold) {
    const std::string digits = "i=0; while [ $i -lt 1000 ]; do printf 0123456789; i=$((i + 1)); "
                               "done >&2";
    EXPECT_EQ(endOf(digits, 0).errors, "");
    EXPECT_EQ(endOf(digits, 1).errors, "9");
    EXPECT_EQ(endOf(digits, 12).errors, "890123456789");
    EXPECT_EQ(endOf(digits, 10'000).errors.size(), 10'000U);
    EXPECT_EQ(endOf(digits, 10'001).errors.size(), 10'000U);
}

TEST_F(LinuxProgramRunnerTest, HoldsNoMoreThanItKeeps) {
    // The peak since now.
    ASSERT_TRUE(std::ofstream("/proc/self/clear_refs") << 5 << std::flush);
    const long before = memory("VmHWM");
    const ProgramEnd end = endOf("/usr/bin/head -c 200000000 /dev/zero >&2; exit 1", 65'536);
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors, std::string(65'536, '\0'));
    EXPECT_LT(memory("VmHWM") - before, 16 * 1'024);
}

TEST_F(LinuxProgramRunnerTest, HandsOverNoDescriptorOfItsOwn) {
    const Gate gate(assistant.home(), "gate");
    assistant.does("1", "read -r line < '" + gate.path() + "'");
    send(QStringLiteral("Hello"), session("1"));
    SessionInfo where = session("2");
    where.cwd = QString::fromStdString(assistant.home().path());
    send(QStringLiteral("Hello"), where);
    ASSERT_TRUE(eventuallyCompleted());
    std::set<int> expected = inheritableDescriptors();
    expected.insert({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO});
    std::set<int> found;
    for (const auto& [number, target] : assistant.call("2").descriptors) {
        found.insert(number);
    }
    EXPECT_THAT(found, IsSubsetOf(expected));
    gate.letPass();
    EXPECT_TRUE(eventuallyCompleted(2));
}

TEST_F(LinuxProgramRunnerTest, LetsNoSignalThroughThatWouldEndWhatOutlivesIt) {
    EXPECT_EQ(outcomeOf(""), std::nullopt);
    const AssistantCall call = assistant.call("abc");
    EXPECT_EQ(call.terminalSession, call.pid);
    EXPECT_NE(call.terminalSession, getsid(0));
    EXPECT_NE(call.ignoredSignals & bitOf(SIGPIPE), 0U);
}

TEST_F(LinuxProgramRunnerTest, BlocksNoSignals) {
    sigset_t some;
    sigset_t before;
    sigemptyset(&some);
    sigaddset(&some, SIGTERM);
    sigaddset(&some, SIGCHLD);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &some, &before), 0);
    EXPECT_EQ(outcomeOf(""), std::nullopt);
    EXPECT_EQ(assistant.call("abc").blockedSignals, 0U);
    EXPECT_EQ(pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
}

TEST_F(LinuxProgramRunnerTest, IsToldTheEndAlsoWhenTheEndOfChildrenWasIgnored) {
    const SignalEffect ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(outcomeOf("exit 6"), "claude exited with status 6");
}

TEST_F(LinuxProgramRunnerTest, LeavesTheHandlerOfTheEndOfChildrenAlone) {
    static volatile std::sig_atomic_t handled = 0;
    handled = 0;
    const SignalEffect counted(SIGCHLD, [](int) { handled = 1; });
    EXPECT_EQ(outcomeOf("exit 6"), "claude exited with status 6");
    EXPECT_EQ(handled, 1);
}

TEST_F(LinuxProgramRunnerTest, NeedsADirectoryThatMayBeEntered) {
    const std::string directory = assistant.home().makeDirectory("closed");
    ASSERT_EQ(chmod(directory.c_str(), 0600), 0);
    const Unprivileged nobody;
    EXPECT_EQ(programs->start({"/bin/true", {}, {}, directory, 0}, nullptr),
              directory + ": Permission denied");
}

TEST_F(LinuxProgramRunnerTest, TellsItsOwnEnvironment) {
    std::vector<std::string> expected;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        expected.emplace_back(*variable);
    }
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(programs->environment(), expected);
}

} // namespace
} // namespace sallowmere
