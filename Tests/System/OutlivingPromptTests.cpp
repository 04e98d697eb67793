// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/ChildProcess.h"
#include "System/Gate.h"
#include "System/PromptRunTest.h"

#include <array>
#include <csignal>
#include <cstdlib>

#include <spawn.h>
#include <sys/wait.h>

namespace sallowmere {
namespace {

int statusOf(pid_t pid) {
    int status = 0;
    EXPECT_TRUE(EventLoop::runUntil([=] { return !isAlive(pid); }));
    EXPECT_EQ(waitpid(pid, &status, WNOHANG), pid);
    return status;
}

/// Has another program send the prompt.
class PromptFromAProgram : public PromptRunTest {
protected:
    /// Runs the program to its end.
    Outcome runSender(const char* what) {
        return run({SALLOWMERE_PROMPT_SENDER,
                    {"prompt-sender", assistant.home().path(), "abc", what},
                    // Qt complains of other locales.
                    {"PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8"},
                    {}});
    }

    /// Starts the program in a terminal, which hangs up on it when it is closed.
    pid_t startSenderIn(const std::string& terminal) {
        std::string name = "prompt-sender";
        std::string home = assistant.home().path();
        std::string id = "abc";
        std::string what = "wait";
        const std::array<char*, 5> arguments{name.data(), home.data(), id.data(), what.data(),
                                             nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        // The first terminal that the leader of a session opens is the session's.
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, terminal.c_str(), O_RDWR, 0);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
        pid_t pid = -1;
        EXPECT_EQ(posix_spawn(&pid, SALLOWMERE_PROMPT_SENDER, &actions, &attributes,
                              arguments.data(), environ),
                  0);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        return pid;
    }

    void waitAtTheGate() {
        assistant.does("abc", "read -r line < '" + gate_.path()
                                  + "'\n/bin/echo late >&2\necho $? > '" + mark_ + "'\n");
    }

    /// Lets the run go on now that nobody reads its complaints.
    void expectThatItGoesOn() {
        ASSERT_TRUE(EventLoop::runUntil([&] { return assistant.wasCalled("abc"); }));
        EXPECT_TRUE(isAlive(assistant.call("abc").pid));
        gate_.letPass();
        ASSERT_TRUE(EventLoop::runUntil([&] { return contentOf(mark_).ends_with('\n'); }));
        EXPECT_EQ(contentOf(mark_), "1\n");
    }

private:
    const Gate gate_{assistant.home(), "gate"};
    const std::string mark_ = assistant.home() / "mark";
};

/// That program ends before the run does.
class OutlivingPrompt : public PromptFromAProgram {};

TEST_F(OutlivingPrompt, GoesOnWhenTheProgramQuits) {
    waitAtTheGate();
    const Outcome outcome = runSender("quit");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output + outcome.errors, "");
    expectThatItGoesOn();
}

TEST_F(OutlivingPrompt, GoesOnWhenTheProgramEndsWithoutTidyingUp) {
    waitAtTheGate();
    EXPECT_EQ(runSender("exit").exitStatus, 0);
    expectThatItGoesOn();
}

TEST_F(OutlivingPrompt, GoesOnWhenTheProgramsTerminalIsClosed) {
    waitAtTheGate();
    Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_TRUE(terminal);
    ASSERT_EQ(grantpt(terminal.get()), 0);
    ASSERT_EQ(unlockpt(terminal.get()), 0);
    std::array<char, 64> name{};
    ASSERT_EQ(ptsname_r(terminal.get(), name.data(), name.size()), 0);
    const pid_t sender = startSenderIn(name.data());
    ASSERT_TRUE(EventLoop::runUntil([&] { return assistant.wasCalled("abc"); }));
    terminal = Descriptor();
    const int status = statusOf(sender);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGHUP) << status;
    expectThatItGoesOn();
}

TEST_F(PromptFromAProgram, WithoutStandardStreamsHasItsOwn) {
    assistant.does("abc", "exit 3");
    EXPECT_EQ(runSender("closed").exitStatus, 1);
    const AssistantCall call = assistant.call("abc");
    EXPECT_EQ(call.descriptors.at(STDIN_FILENO), "/dev/null");
    EXPECT_EQ(call.descriptors.at(STDOUT_FILENO), "/dev/null");
    EXPECT_TRUE(call.descriptors.at(STDERR_FILENO).starts_with("pipe:"));
}

TEST_F(PromptFromAProgram, WithTwoDescriptorsToSpareIsWatched) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors itself";
#endif
    const Outcome outcome = runSender("full");
    EXPECT_EQ(outcome.output, "well\n");
    EXPECT_EQ(outcome.exitStatus, 1);
}

TEST_F(PromptFromAProgram, ThatCouldNotBeToldItsEndIsEnded) {
    waitAtTheGate();
    const Outcome outcome = runSender("no-pidfd");
    EXPECT_EQ(outcome.output,
              "failed to launch claude: " + assistant.path() + ": Function not implemented\n");
    EXPECT_EQ(outcome.exitStatus, 1);
    if (assistant.wasCalled("abc")) {
        EXPECT_FALSE(isAlive(assistant.call("abc").pid));
    }
}

} // namespace
} // namespace sallowmere
