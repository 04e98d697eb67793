// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"
#include "X11/WaitFor.h"

#include <csignal>
#include <fstream>
#include <string>

namespace sallowmere {
namespace {

/// Nothing when there is no such file.
std::string firstLine(const std::string& path) {
    std::ifstream stream(path);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// The state letter of a process, as the kernel tells it.
char stateOf(pid_t pid) {
    const std::string text = firstLine("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t end = text.rfind(')');
    return end == std::string::npos || end + 2 >= text.size() ? ' ' : text[end + 2];
}

/// The assistant's files are on a file system that stops answering.
class HangingFiles : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown(WindowManager::Kind::openbox, R"(,"claudeBinary":"~/.claude/local/claude")");
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        const TemporaryHome& home = desk().home.directory();
        home.writeProgram(".claude/local/claude", "echo \"$*\" >> \"$HOME/calls\"\n");
        const std::string pidFile = home / "server";
        desk().startPanel({{}, {SALLOWMERE_HANGING_DIRECTORY, home / ".claude", pidFile}});
        std::ifstream(pidFile) >> server_;
        ASSERT_GT(server_, 0);
        panel().enter();
        panel().tree().find("Lantern, done");
        panel().leave();
    }

    PanelWindow& panel() { return *desk().panel; }
    LiveSession& session() { return *session_; }

    /// The panel has asked for something and waits for the answer; the kernel ends nobody who does.
    void hang() const {
        kill(server_, SIGUSR1);
        waitFor("the file system to hang", [this] { return stateOf(server_) == 'T'; });
    }
    void goOn() const { kill(server_, SIGCONT); }

    /// The window goes, and whoever starts the panel again is not told that it runs.
    void expectGone() {
        const pid_t first = desk().program->pid();
        waitFor("the window to go", [&] { return !findPanel(desk().client, first); });
        const std::unique_ptr<RunningPanel> before = std::move(desk().program);
        desk().startPanel().enter();
        panel().tree().find("Lantern, done");
        goOn();
        EXPECT_EQ(before->waitForEnd().status, 0);
        EXPECT_EQ(before->errors(), "");
    }

private:
    std::unique_ptr<LiveSession> session_;
    pid_t server_ = 0;
};

TEST_F(HangingFiles, AreShownAsTheyWereUntilTheyAnswerAgain) {
    hang();
    session().work("Pick a colour");
    panel().enter();
    panel().tree().find("Lantern, done");
    panel().leave();
    goOn();
    panel().enter();
    panel().tree().find("Lantern, working");
    EXPECT_EQ(desk().program->errors(), "");
}

TEST_F(HangingFiles, HoldUpAPromptButNotThePanel) {
    constexpr const char* field = "Prompt this session…";
    const std::string calls = desk().home.directory() / "calls";
    panel().enter();
    panel().click("Lantern, done");
    panel().tree().find(field, "text");
    panel().waitForRest();
    hang();
    panel().click(field, "text");
    desk().user.type("light it");
    waitFor("the text",
            [&] { return AccessibleTree::text(panel().tree().find(field, "text")) == "light it"; });
    desk().user.tap(Keys::enter);
    panel().tree().find("Running headlessly — response will appear as the active session");
    EXPECT_EQ(firstLine(calls), "");
    goOn();
    waitFor("the run", [&] { return firstLine(calls).ends_with("-- light it"); });
    EXPECT_EQ(desk().program->errors(), "");
}

TEST_F(HangingFiles, DoNotKeepThePanelOnTheScreenWhenTheUserQuits) {
    hang();
    panel().enter();
    panel().click("Quit Sallowmere", "push button");
    expectGone();
}

TEST_F(HangingFiles, DoNotKeepThePanelOnTheScreenWhenItIsToldToEnd) {
    hang();
    desk().program->terminate();
    expectGone();
}

using Fifos = EndToEndTest;

TEST_F(Fifos, AmongTheTranscriptsAreNotWaitedFor) {
    sitDown();
    LiveSession session = desk().home.addSession("lantern", "Lantern");
    desk().home.directory().makeFifo(".claude/projects/-work-lantern/fifo.jsonl");
    desk().startPanel().enter();
    desk().panel->tree().find("Lantern, done");
    session.work("Pick a colour");
    desk().panel->tree().find("Lantern, working");
}

} // namespace
} // namespace sallowmere
