// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/EnvironmentVariable.h"
#include "System/Executable.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* projects = ".claude/projects/";

/// A home with one healthy session beside whatever a test breaks.
class DamagedHome : public testing::Test {
protected:
    DamagedHome() {
        home.writeProgram(".local/bin/claude");
        home.addSession("-project", "Healthy", "/w/project");
    }

    std::string in(const std::string& relative) const { return projects + relative; }

    /// The whole report, with nothing in it but the healthy session.
    void expectTheHealthySessionAlone() const {
        EXPECT_EQ(dump(home.path()), "claude binary: " + (home / ".local/bin/claude")
                                         + "\n5h: 0 / 50000000 wtok (0%)\n"
                                           "7d: 0 / 350000000 wtok (0%)\n"
                                           "\n"
                                           "[done] Healthy  <Opus|project>\n"
                                           "  you: Healthy\n"
                                           "  act: Done \u2014 click to jump\n"
                                           "    \u00B7 All done.\n");
    }

    TemporaryHome home;
};

TEST_F(DamagedHome, ReportsItsHealthySession) {
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldTranscriptsThatAreNoFiles) {
    home.makeFifo(in("-project/x.jsonl"));
    home.makeFifo(in("y.jsonl"));
    home.makeDirectory(in("-project/directory.jsonl"));
    home.makeLink(in("-project/dangling.jsonl"), home / "nothing");
    home.makeLink(in("-project/circle.jsonl"), home / in("-project/circle.jsonl"));
    home.makeLink(in("-project/device.jsonl"), "/dev/zero");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldProjectsThatAreNoDirectories) {
    home.makeFifo(in("fifo"));
    home.makeLink(in("dangling"), home / "nothing");
    home.makeLink(in("device"), "/dev/zero");
    home.write(in("file"), "not a directory");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldDirectoriesThatContainThemselves) {
    home.makeLink(in("-project/up"), home / projects);
    home.makeLink(in("-project/up.jsonl"), "..");
    home.makeDirectory(in("-other"));
    home.makeLink(in("-other/self"), ".");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldWhatCannotBeRead) {
    const std::string directory = home.makeDirectory(in("-locked"));
    std::filesystem::permissions(directory, std::filesystem::perms::none);
    expectTheHealthySessionAlone();
    std::filesystem::permissions(directory, std::filesystem::perms::owner_all);
}

TEST_F(DamagedHome, MayHoldEmptyTranscripts) {
    home.write(in("-project/empty.jsonl"), "");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldGarbage) {
    std::string garbage;
    for (unsigned number = 1; garbage.size() < 1'000'000;
         number = number * 1'103'515'245U + 12'345U) {
        garbage += static_cast<char>(number >> 16U);
    }
    home.write(in("-garbage/g.jsonl"), garbage);
    home.write(in("-garbage/zeros.jsonl"), std::string(1'000'000, '\0'));
    home.write(in("-garbage/deep.jsonl"), std::string(1'000'000, '['));
    const std::string report = dump(home.path());
    EXPECT_THAT(report, StartsWith("claude binary: " + (home / ".local/bin/claude")
                                   + "\n5h: 0 / 50000000 wtok (0%)\n"
                                     "7d: 0 / 350000000 wtok (0%)\n\n["));
    EXPECT_THAT(report, HasSubstr("\n[done] Healthy  <Opus|project>\n  you: Healthy\n"));
}

TEST_F(DamagedHome, MayHoldNamesThatAreNoUtf8) {
    const std::string healthy = home / in("-project/5e55.jsonl");
    const std::string renamed = home.makeDirectory(in("-\xFF")) + "/\xE9\xFF.jsonl";
    std::filesystem::rename(healthy, renamed);
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHaveTenThousandProjects) {
    // In memory, for the sake of the disk.
    const std::string memory = "/dev/shm";
    const EnvironmentVariable place("TMPDIR",
                                    std::filesystem::is_directory(memory)
                                        ? memory
                                        : std::filesystem::temp_directory_path().native());
    const TemporaryHome elsewhere;
    for (int number = 0; number < 10'000; ++number) {
        elsewhere.makeDirectory(in("-p" + std::to_string(number)));
    }
    elsewhere.addSession("-project", "Healthy", "/w/project");
    home.write(".config/sallowmere/settings.json",
               R"({"claudeRoot":")" + (elsewhere / projects) + "\"}");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldTranscriptsOfAnyAge) {
    setModified(home.write(in("-old/past.jsonl"), "{}\n"), -(1LL << 60));
    setModified(home.write(in("-old/negative.jsonl"), "{}\n"), -1);
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, ToleratesATranscriptFromTheFarFuture) {
    setModified(home.write(in("-new/future.jsonl"), "{}\n"), 1LL << 60);
    EXPECT_THAT(dump(home.path()), AllOf(HasSubstr("\n[working] new  <Claude|new>\n"),
                                         HasSubstr("\n[done] Healthy  <Opus|project>\n")));
}

TEST_F(DamagedHome, MayHoldSettingsThatAreNoFile) {
    home.makeFifo(".config/sallowmere/settings.json");
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayHoldSettingsThatAreGarbage) {
    home.write(".config/sallowmere/settings.json", std::string("{\"fiveHourLimit\": 1\0", 20));
    expectTheHealthySessionAlone();
}

TEST_F(DamagedHome, MayLackItsProjects) {
    std::filesystem::remove_all(home / ".claude");
    home.write(".claude", "no directory");
    EXPECT_THAT(dump(home.path()), EndsWith("\n7d: 0 / 350000000 wtok (0%)\n"));
}

} // namespace
} // namespace sallowmere
