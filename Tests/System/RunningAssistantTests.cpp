// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Sallowmere/Processes/ProcessScanner.h"
#include "Sallowmere/Sessions/SessionScanner.h"
#include "System/ChildProcess.h"
#include "System/Executable.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

/// A shell under a terminal's name that runs an assistant in a directory of `home`.
class TerminalWithAssistant {
public:
    TerminalWithAssistant(const TemporaryHome& home, const std::string& terminal,
                          const std::string& directory)
        : shell_({copyOfShell(home, terminal),
                  {terminal, "-c", "\"$0\"; :", SALLOWMERE_ASSISTANT},
                  {},
                  directory}),
          assistant_(std::stoi(shell_.readLine())) {}

    pid_t terminal() const { return shell_.pid(); }
    pid_t assistant() const { return assistant_; }

private:
    static std::string copyOfShell(const TemporaryHome& home, const std::string& name) {
        std::string path = home.makeDirectory("bin") + '/' + name;
        std::filesystem::copy_file("/bin/sh", path, std::filesystem::copy_options::skip_existing);
        return path;
    }

    ChildProcess shell_;
    pid_t assistant_;
};

/// Some versions of `ps` take a process in its first clock tick for one from long before the
/// machine was switched on.
bool isOlderThanATick(const ClaudeProcess& process) {
    constexpr std::int64_t thousandYears = 31'536'000'000;
    return process.elapsedSeconds < thousandYears;
}

std::optional<ClaudeProcess> found(pid_t pid) {
    std::optional<ClaudeProcess> result;
    do {
        const std::vector<ClaudeProcess> processes = ProcessScanner::scan(LinuxProcessTable());
        const auto process = std::find_if(processes.begin(), processes.end(),
                                          [=](const ClaudeProcess& p) { return p.pid == pid; });
        result = process == processes.end() ? std::nullopt : std::optional(*process);
    } while (result && !isOlderThanATick(*result));
    return result;
}

Timestamp present() {
    return std::chrono::floor<Timestamp::duration>(std::chrono::system_clock::now());
}

std::string pidText(pid_t pid) {
    return "pid " + std::to_string(pid) + ' ';
}

TEST(RunningAssistant, IsFoundWithItsAgeDirectoryAndTerminal) {
    for (const auto& [comm, name] : {std::pair{"xterm", "XTerm"}, std::pair{"kitty", "kitty"},
                                     std::pair{"gnome-terminal-server", "Terminal"}}) {
        const TemporaryHome home;
        const Timestamp before = present();
        const TerminalWithAssistant running(home, comm, home.makeDirectory("w\xC3\xB6rk here"));
        const std::optional<ClaudeProcess> process = found(running.assistant());
        ASSERT_TRUE(process.has_value()) << comm;
        EXPECT_GE(process->elapsedSeconds, 0);
        EXPECT_LE(static_cast<double>(process->elapsedSeconds),
                  secondsBetween(before, present()) + 1);
        EXPECT_EQ(process->elapsed.toStdString(),
                  std::to_string(process->elapsedSeconds / 60) + 'm');
        EXPECT_GE(process->cpuPercent, 0);
        EXPECT_EQ(process->cwd, QString::fromStdString(home / "w\xC3\xB6rk here"));
        EXPECT_EQ(process->terminalName, QString(name));
        EXPECT_EQ(process->terminalPid, running.terminal());
    }
}

TEST(RunningAssistant, IsNoOrphanOnceItIsAZombie) {
    const TemporaryHome home;
    ChildProcess assistant({SALLOWMERE_ASSISTANT, {"claude"}, {}, home.path()});
    ASSERT_EQ(assistant.readLine(), std::to_string(assistant.pid()));
    EXPECT_EQ(found(assistant.pid())->cwd, QString::fromStdString(home.path()));
    EXPECT_THAT(dump(home.path()), HasSubstr("orphan process: " + pidText(assistant.pid())));
    assistant.finish();
    // Some versions of ps mark the name of a zombie, which then is another one; others do not.
    EXPECT_EQ(found(assistant.pid()).value_or(ClaudeProcess{}).cwd, std::nullopt);
    EXPECT_THAT(dump(home.path()), Not(HasSubstr("orphan process")));
}

TEST(RunningAssistant, IsMatchedToTheSessionInItsDirectory) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("project");
    const std::string transcript = home.addSession("-project", "Hello", directory);
    const TerminalWithAssistant running(home, "xterm", directory);
    const LinuxFileSystem files;
    const std::vector<SessionInfo> sessions =
        SessionScanner(files).scan(Settings::defaults(home.path()), present());
    ASSERT_EQ(sessions.size(), 1U);
    const ProcessScanner::Matches matches =
        ProcessScanner::match(ProcessScanner::scan(LinuxProcessTable()), sessions, present());
    const QString id = QString::fromStdString(transcript);
    ASSERT_TRUE(matches.bySessionId.contains(id));
    EXPECT_EQ(matches.bySessionId[id].pid, running.assistant());
    EXPECT_TRUE(std::none_of(matches.orphans.begin(), matches.orphans.end(),
                             [&](const auto& p) { return p.pid == running.assistant(); }));
}

TEST(RunningAssistant, IsReportedWithItsSession) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("project");
    home.addSession("-project", "Hello", directory);
    const TerminalWithAssistant running(home, "kitty", directory);
    EXPECT_THAT(dump(home.path()),
                AllOf(ContainsRegex("\n\\[done\\] Hello  <Opus\\|project> \u26A1"
                                    + pidText(running.assistant()) + "[0-9]+%\n"),
                      Not(HasSubstr("orphan process"))));
}

TEST(RunningAssistant, IsReportedAsAnOrphanWithoutASession) {
    const TemporaryHome home;
    home.addSession("-project", "Hello", home / "project");
    const TerminalWithAssistant running(home, "xterm", home.makeDirectory("elsewhere"));
    EXPECT_THAT(dump(home.path()),
                AllOf(ContainsRegex("\norphan process: " + pidText(running.assistant())
                                    + (home / "elsewhere") + " [0-9]+m\n5h: "),
                      HasSubstr("\n[done] Hello  <Opus|project>\n")));
}

TEST(RunningAssistant, SharesADirectoryWithASecondOne) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("project");
    home.addSession("-project", "Hello", directory);
    const TerminalWithAssistant first(home, "xterm", directory);
    const TerminalWithAssistant second(home, "kitty", directory);
    const std::string report = dump(home.path());
    const auto matchedThenOrphan = [&](pid_t matched, pid_t orphan) {
        return report.find("\u26A1" + pidText(matched)) != std::string::npos
               && report.find("orphan process: " + pidText(orphan)) != std::string::npos;
    };
    EXPECT_NE(matchedThenOrphan(first.assistant(), second.assistant()),
              matchedThenOrphan(second.assistant(), first.assistant()))
        << report;
}

} // namespace
} // namespace sallowmere
