// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include "Sallowmere/Processes/ProcessScanner.h"
#include "System/ChildProcess.h"
#include "System/EnvironmentVariable.h"
#include "System/TemporaryHome.h"
#include "System/Unprivileged.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>

#include <unistd.h>

namespace sallowmere {
namespace {

const LinuxProcessTable processes;

std::optional<PsRow> rowOf(pid_t pid) {
    const std::vector<PsRow> rows = ProcessScanner::runPs(processes);
    const auto row =
        std::find_if(rows.begin(), rows.end(), [=](const PsRow& r) { return r.pid == pid; });
    return row == rows.end() ? std::nullopt : std::optional(*row);
}

Command assistantIn(const std::string& directory) {
    return {SALLOWMERE_ASSISTANT, {"claude"}, {}, directory};
}

TEST(LinuxProcessTable, ListsThisProcess) {
    const std::optional<PsRow> row = rowOf(getpid());
    ASSERT_TRUE(row.has_value());
    EXPECT_EQ(row->ppid, getppid());
    EXPECT_EQ(row->uid, getuid());
    EXPECT_EQ(row->comm, "system-tests");
}

TEST(LinuxProcessTable, ListsOtherUsersProcessesToo) {
    const Unprivileged user;
    EXPECT_TRUE(rowOf(1).has_value());
}

TEST(LinuxProcessTable, PrintsLinesOfWhichEachIsARow) {
    const std::string listing = processes.listing();
    const auto lines = std::count(listing.begin(), listing.end(), '\n');
    EXPECT_GT(lines, 1);
    std::size_t rows = 0;
    for (std::size_t start = 0; start < listing.size();) {
        const std::size_t end = listing.find('\n', start);
        const std::string line = listing.substr(start, end - start);
        EXPECT_TRUE(ProcessScanner::parseRow(line).has_value()) << line;
        start = end + 1;
        ++rows;
    }
    EXPECT_EQ(rows, static_cast<std::size_t>(lines));
}

TEST(LinuxProcessTable, DependsOnNoLocale) {
    const EnvironmentVariable place("LOCPATH", SALLOWMERE_LOCALES);
    for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8", "nonsense"}) {
        const EnvironmentVariable variable("LC_ALL", locale);
        EXPECT_TRUE(rowOf(getpid()).has_value()) << locale;
    }
}

TEST(LinuxProcessTable, NeedsNoApplicationObjectAndWarnsOfNothing) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(processes.listing().empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(LinuxProcessTable, LeavesNoChildBehind) {
    processes.listing();
    for (const PsRow& row : ProcessScanner::runPs(processes)) {
        // The one that lists itself runs; an earlier one would be a zombie.
        EXPECT_FALSE(row.ppid == getpid() && row.comm.ends_with("<defunct>")) << row.comm;
    }
}

TEST(LinuxProcessTable, KnowsItsUser) {
    EXPECT_EQ(processes.userId(), getuid());
}

TEST(WorkingDirectory, IsKnownOfThisProcess) {
    EXPECT_EQ(processes.workingDirectory(getpid()), std::filesystem::current_path().native());
}

TEST(WorkingDirectory, IsKnownOfAChildElsewhere) {
    const TemporaryHome home("caf\xE9 x");
    ChildProcess child(assistantIn(home.path()));
    ASSERT_EQ(child.readLine(), std::to_string(child.pid()));
    EXPECT_EQ(processes.workingDirectory(child.pid()), home.path());
}

TEST(WorkingDirectory, ReadsAsTheKernelHasItAfterItsRemoval) {
    const TemporaryHome home;
    const std::string directory = home.makeDirectory("gone");
    ChildProcess child(assistantIn(directory));
    ASSERT_EQ(child.readLine(), std::to_string(child.pid()));
    std::filesystem::remove(directory);
    EXPECT_EQ(processes.workingDirectory(child.pid()), directory + " (deleted)");
}

TEST(WorkingDirectory, IsUnknownOfAZombie) {
    const TemporaryHome home;
    ChildProcess child(assistantIn(home.path()));
    ASSERT_EQ(child.readLine(), std::to_string(child.pid()));
    child.finish();
    EXPECT_EQ(processes.workingDirectory(child.pid()), std::nullopt);
}

TEST(WorkingDirectory, IsUnknownOfWhatIsNoProcess) {
    for (const std::int32_t pid : {0, -1, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(processes.workingDirectory(pid), std::nullopt) << pid;
    }
}

} // namespace
} // namespace sallowmere
