// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/PromptingTest.h"
#include "EndToEnd/RunningSession.h"
#include "X11/WaitFor.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>

#include <sys/resource.h>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

/// The process id in a file; 0 as long as there is no whole line in it.
pid_t pidIn(const std::string& path) {
    std::ifstream stream(path);
    pid_t pid = 0;
    stream >> pid;
    return stream.get() == '\n' ? pid : 0;
}

pid_t awaitPid(const std::string& path) {
    waitFor("a process id in " + path, [&] { return pidIn(path) != 0; });
    return pidIn(path);
}

/// A panel for which a script of the test's lists the processes, at first as it should.
class ListingOfProcesses : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown();
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        session_->work("Pick a colour");
        const Terminal& assistant = desk().addAssistant(*session_);
        running_ = "claude running · pid " + std::to_string(assistant.inside);
        fs::copy_file("/bin/ps", files_ / "real-ps");
        const std::string ps = files_.writeProgram(
            "ps", "if [ -e '" + files_ / "hang" + "' ]; then echo $$ > '" + files_ / "hanging"
                      + "'; exec sleep 100000; fi\nexec '" + files_ / "real-ps" + "' \"$@\"\n");
        desk().startPanel({{}, {SALLOWMERE_PRIVATE_MOUNTS, "--instead", ps, "/bin/ps"}});
        panel().enter();
        waitForProcess();
    }

    PanelWindow& panel() { return *desk().panel; }
    LiveSession& session() { return *session_; }

    /// From now on it does not end; returns the first that does not.
    pid_t hang() {
        files_.write("hang", "");
        return awaitPid(files_ / "hanging");
    }
    void goOn() { fs::remove(files_ / "hang"); }

    /// The panel knows that the session's assistant runs, or does not.
    void waitForProcess() {
        waitFor(running_, [&] { return panel().tree().isDescribed(running_); });
    }
    void waitForNoProcess() {
        waitFor("no process", [&] { return !panel().tree().isDescribed(running_); });
    }

private:
    TemporaryHome files_;
    std::unique_ptr<LiveSession> session_;
    std::string running_;
};

TEST_F(ListingOfProcesses, ThatIsKilledIsRightAgainTheNextTime) {
    const pid_t listing = hang();
    panel().leave();
    panel().enter();
    kill(listing, SIGKILL);
    waitForNoProcess();
    goOn();
    waitForProcess();
    EXPECT_FALSE(desk().program->hasEnded());
    EXPECT_EQ(desk().program->errors(), "");
}

TEST_F(ListingOfProcesses, ThatNeverEndsIsEndedAndKeepsNothingElseFromBeingShown) {
    const pid_t listing = hang();
    session().finish();
    panel().tree().find("Lantern, done");
    waitForNoProcess();
    // Nobody is left who would list processes for ever.
    EXPECT_NE(kill(listing, 0), 0);
    goOn();
    waitForProcess();
    EXPECT_EQ(desk().program->errors(), "");
}

using KilledPrompt = PromptingTest;

TEST_F(KilledPrompt, IsAnErrorThatIsShownAndTheNextOneWorks) {
    const std::string pidFile = desk().home.directory() / "prompt";
    assistantDoes("echo $$ > '" + pidFile + "'; exec sleep 100000");
    openDetails();
    clickField();
    desk().user.type("light it");
    desk().user.tap(Keys::enter);
    kill(awaitPid(pidFile), SIGKILL);
    panel().tree().find("claude exited with status 9");

    assistantDoes("exit 0");
    // Again when a refresh that came between put another field in its place: one that saw the run
    // while it still went by the assistant's name.
    waitFor("the field to have the keyboard", [&] {
        panel().click("Prompt this session…", "text");
        return AccessibleTree::isFocused(field()) && !desk().client.hasFocus(other().window);
    });
    desk().user.type("again");
    desk().user.tap(Keys::enter);
    panel().tree().waitUntilGone("claude exited with status 9");
    waitFor("the second run", [&] { return assistantCalls().size() == 2; });
    EXPECT_EQ(desk().received(other()), "");
}

/// The terminal of a session is stopped.
class StoppedTerminal : public RunningSession {
protected:
    void SetUp() override {
        RunningSession::SetUp();
        kill(assistant().owner, SIGSTOP);
    }

    void goOn() { kill(assistant().owner, SIGCONT); }

    /// The panel opens and closes as ever, and shows what is new.
    void expectLife() {
        panel().leave();
        session().takeAnswer();
        session().finish();
        panel().enter();
        panel().tree().find("Lantern notes, done");
        panel().leave();
    }
};

TEST_F(StoppedTerminal, GetsItsAnswerWhenItGoesOnAndNobodyElseDoes) {
    session().ask("Which colour?", {"Amber", "Moss", "Slate"});
    panel().waitUntilExpanded();
    panel().enter();
    panel().click("Moss", "push button");
    desk().waitForFront(assistant());
    expectLife();
    goOn();
    EXPECT_EQ(desk().awaitKey(assistant()), "2");
    expectKeys("2");
}

TEST_F(StoppedTerminal, IsBroughtToTheFront) {
    panel().enter();
    panel().click("Jump to this session's terminal", "push button");
    desk().waitForFront(assistant());
    expectLife();
    goOn();
    expectKeys("");
}

/// Many sessions, and few files that the program may have open.
class ScarceDescriptors : public EndToEndTest {
protected:
    static constexpr int count = 40;

    void SetUp() override {
        sitDown(WindowManager::Kind::openbox, ",\"maxSessions\":50");
        for (int i = 1; i <= count; ++i) {
            const std::string number = std::to_string(i);
            sessions_.push_back(desk().home.addSession("number" + number, "Session " + number));
        }
        desk().startPanel({{}, {"/usr/bin/prlimit", "--nofile=64:4096"}});
    }

    PanelWindow& panel() { return *desk().panel; }
    LiveSession& newest() { return sessions_.back(); }
    /// What a session is called by.
    static std::string name(const std::string& status) {
        return "Session " + std::to_string(count) + ", " + status;
    }

    /// The numbers of the program's open files.
    std::set<rlim_t> openFiles() {
        std::set<rlim_t> numbers;
        const std::string files = "/proc/" + std::to_string(desk().program->pid()) + "/fd";
        for (const fs::directory_entry& entry : fs::directory_iterator(files)) {
            numbers.insert(std::stoul(entry.path().filename()));
        }
        return numbers;
    }

    rlim_t lowestFree() {
        rlim_t number = 0;
        for (const std::set<rlim_t> taken = openFiles(); taken.contains(number);) {
            ++number;
        }
        return number;
    }

    /// The numbers of the files that the running program opens are below this from now on.
    void allow(rlim_t files) {
        const rlimit limit{files, 4'096};
        ASSERT_EQ(prlimit(desk().program->pid(), RLIMIT_NOFILE, &limit, nullptr), 0);
    }

private:
    std::vector<LiveSession> sessions_;
};

TEST_F(ScarceDescriptors, AreEnoughForManySessions) {
    panel().enter();
    panel().tree().find(name("done"));
    newest().work();
    panel().tree().find(name("working"));
    EXPECT_EQ(desk().program->errors(), "");
}

TEST_F(ScarceDescriptors, AreMissedOnlyAsLongAsNoneOrHardlyAnyIsLeft) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors itself to look at objects";
#endif
    panel().enter();
    panel().tree().find(name("done"));
    // All but the few numbers that lie free between those of open files, then those as well.
    for (const rlim_t files : {*openFiles().rbegin() + 1, lowestFree()}) {
        allow(files);
        panel().leave();
        panel().enter();
    }
    newest().work();
    allow(1'024);
    panel().tree().find(name("working"));
    EXPECT_FALSE(desk().program->hasEnded());
}

} // namespace
} // namespace sallowmere
