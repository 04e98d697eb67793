// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include "Support/FakeProcessTable.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::int32_t> pids(const FakeProcessTable& processes) {
    std::vector<std::int32_t> found;
    for (const ClaudeProcess& process : ProcessScanner::scan(processes)) {
        found.push_back(process.pid);
    }
    return found;
}

/// Whether a process of the user with this name counts as the assistant.
bool isFound(const std::string& comm) {
    FakeProcessTable processes;
    processes.listingText = "7 1 1000 0.0 00:01 " + comm + '\n';
    return !ProcessScanner::scan(processes).empty();
}

TEST(ProcessScan, DescribesAnAssistant) {
    FakeProcessTable processes;
    processes.listingText = "   40     1  1000  1.0    05:00 kitty\n"
                            "   41    40  1000  0.0    04:00 bash\n"
                            "   42    41  1000 12.5  2-03:04:05 claude\n";
    processes.directories[42] = "/home/u/w\xC3\xB6rk";
    const std::vector<ClaudeProcess> found = ProcessScanner::scan(processes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front(), (ClaudeProcess{42, 12.5, "2d3h", 183'845, QString("/home/u/w\u00F6rk"),
                                            QString("kitty"), 40}));
}

TEST(ProcessScan, LeavesAbsentWhatIsUnknown) {
    FakeProcessTable processes;
    processes.listingText = "42 1 1000 0.0 00:09 claude\n";
    const std::vector<ClaudeProcess> found = ProcessScanner::scan(processes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front(), (ClaudeProcess{42, 0, "0m", 9, {}, {}, {}}));
}

TEST(ProcessScan, TakesOnlyTheUsersOwn) {
    FakeProcessTable processes;
    processes.user = 1001;
    processes.listingText = "1 0 0 0.0 00:01 claude\n"
                            "2 0 1000 0.0 00:01 claude\n"
                            "3 0 1001 0.0 00:01 claude\n"
                            "4 0 4294967295 0.0 00:01 claude\n";
    EXPECT_THAT(pids(processes), ElementsAre(3));
}

TEST(ProcessScan, TakesWhatIsNamedExactlyClaude) {
    EXPECT_TRUE(isFound("claude"));
    EXPECT_TRUE(isFound("/usr/local/bin/claude"));
    EXPECT_TRUE(isFound("/home/u/my bin/claude"));
    for (const char* comm : {"Claude", "CLAUDE", "claude-helper", "claude.exe", "my-claude",
                             "claude code", "/opt/claude/bin/node", "2.1.329"}) {
        EXPECT_FALSE(isFound(comm)) << comm;
    }
}

TEST(ProcessScan, TakesNoneOfAnApplicationBundle) {
    EXPECT_FALSE(isFound("/Applications/Some App.app/Contents/MacOS/claude"));
    EXPECT_TRUE(isFound("/home/u/my.app.d/claude"));
    EXPECT_TRUE(isFound("/home/u/app/claude"));
}

TEST(ProcessScan, TakesNoZombie) {
    EXPECT_FALSE(isFound("claude <defunct>"));
}

TEST(ProcessScan, KeepsTheOrderOfTheListing) {
    FakeProcessTable processes;
    processes.listingText = "9 1 1000 0.0 00:01 claude\n"
                            "3 1 1000 0.0 00:01 claude\n"
                            "5 1 1000 0.0 00:01 bash\n"
                            "7 1 1000 0.0 00:01 claude\n";
    EXPECT_THAT(pids(processes), ElementsAre(9, 3, 7));
}

TEST(ProcessScan, IsEmptyWithoutAListing) {
    EXPECT_THAT(pids(FakeProcessTable()), IsEmpty());
}

TEST(ProcessScan, LooksForTerminalsAmongAllUsersAndAllOfTheListing) {
    FakeProcessTable processes;
    processes.listingText = "42 50 1000 0.0 00:01 claude\n"
                            "50 51 0 0.0 00:01 sudo\n"
                            "51 1 0 0.0 00:01 alacritty\n";
    const std::vector<ClaudeProcess> found = ProcessScanner::scan(processes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().terminalName, "Alacritty");
    EXPECT_EQ(found.front().terminalPid, 51);
}

TEST(ProcessScan, KnowsThePlatformsTerminals) {
    FakeProcessTable processes;
    processes.platformTerminals = {{"foot", "foot", TerminalRule::Match::exact}};
    processes.listingText = "40 1 1000 0.0 00:01 foot\n"
                            "42 40 1000 0.0 00:01 claude\n";
    const std::vector<ClaudeProcess> found = ProcessScanner::scan(processes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().terminalName, "foot");
    EXPECT_EQ(found.front().terminalPid, 40);
}

TEST(ProcessScan, BelievesTheLaterOfTwoRowsWithOnePid) {
    FakeProcessTable processes;
    processes.listingText = "40 1 1000 0.0 00:01 kitty\n"
                            "42 40 1000 0.0 00:01 claude\n"
                            "40 1 1000 0.0 00:01 ghostty\n";
    const std::vector<ClaudeProcess> found = ProcessScanner::scan(processes);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().terminalName, "Ghostty");
}

TEST(ProcessScan, LooksFifteenAncestorsUp) {
    FakeProcessTable processes;
    processes.listingText = "100 101 1000 0.0 00:01 claude\n";
    for (int pid = 101; pid < 115; ++pid) {
        processes.listingText +=
            std::to_string(pid) + ' ' + std::to_string(pid + 1) + " 1000 0.0 00:01 bash\n";
    }
    const std::string fifteenth = "115 116 1000 0.0 00:01 ";
    const std::string sixteenth = "116 1 1000 0.0 00:01 kitty\n";
    const std::string shells = processes.listingText;
    processes.listingText = shells + fifteenth + "kitty\n";
    EXPECT_EQ(ProcessScanner::scan(processes).at(0).terminalPid, 115);
    processes.listingText = shells + fifteenth + "bash\n" + sixteenth;
    EXPECT_EQ(ProcessScanner::scan(processes).at(0).terminalPid, std::nullopt);
}

} // namespace
} // namespace sallowmere
