// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/DiagnosticDump.h"

#include "Support/FakeFileSystem.h"
#include "Support/FakeProcessTable.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const Timestamp now = at("2025-06-02T12:00:00Z");
const std::string home = "/nonexistent/u";
const std::string project = home + "/.claude/projects/-w";

class CollectedModel : public testing::Test {
protected:
    /// A session whose turn ended, in `cwd`.
    FakeFileSystem::File& addSession(const std::string& name, const std::string& cwd,
                                     Timestamp modified = now) {
        return files.addFile(
            project + '/' + name + ".jsonl",
            R"({"type":"user","cwd":")" + cwd + R"(","sessionId":")" + name
                + R"(","timestamp":"2025-06-02T11:00:00.000Z",)"
                + R"("message":{"role":"user","content":"do )" + name + "\"}}\n"
                + R"({"type":"assistant","timestamp":"2025-06-02T11:59:00.000Z","message":{)"
                + R"("id":"m)" + name + R"(","model":"claude-opus-4","content":[],)"
                + R"("usage":{"input_tokens":100,"output_tokens":10}}})" + '\n',
            modified);
    }

    DiagnosticDump::Model collect() {
        return DiagnosticDump::collect(
            files, processes, [this] { return moments.at(clockReads++); }, home);
    }

    FakeFileSystem files;
    FakeProcessTable processes;
    std::vector<Timestamp> moments{now, now, now};
    std::size_t clockReads = 0;
};

TEST_F(CollectedModel, OfAnEmptyHomeIsEmpty) {
    const DiagnosticDump::Model model = collect();
    EXPECT_EQ(model.claudeBinary, std::nullopt);
    EXPECT_THAT(model.orphans, IsEmpty());
    EXPECT_THAT(model.sessions, IsEmpty());
    EXPECT_EQ(DiagnosticDump::report(model), "claude binary: NOT FOUND\n"
                                             "5h: 0 / 50000000 wtok (0%)\n"
                                             "7d: 0 / 350000000 wtok (0%)\n");
}

TEST_F(CollectedModel, GivesEachSessionItsProcessAndKeepsTheOrphans) {
    addSession("a", "/w/a", now);
    addSession("b", "/w/b", advancedBy(now, -5));
    processes.listingText = "7 1 1000 1.9 00:10 claude\n"
                            "8 1 1000 0.0 00:10 claude\n"
                            "9 1 1000 0.0 00:10 claude\n";
    processes.directories = {{7, "/w/b"}, {8, "/elsewhere"}};
    const DiagnosticDump::Model model = collect();
    ASSERT_EQ(model.sessions.size(), 2U);
    EXPECT_EQ(model.sessions[0].title, "do a");
    EXPECT_EQ(model.sessions[0].process, std::nullopt);
    ASSERT_TRUE(model.sessions[1].process.has_value());
    EXPECT_EQ(model.sessions[1].process->pid, 7);
    ASSERT_EQ(model.orphans.size(), 1U);
    EXPECT_EQ(model.orphans[0].pid, 8);
}

TEST_F(CollectedModel, ShowsNoProcessOnASessionThatGotNone) {
    addSession("a", "/w/a");
    processes.listingText = "8 1 1000 0.0 00:10 claude\n";
    processes.directories = {{8, "/elsewhere"}};
    const std::string text = DiagnosticDump::report(collect());
    EXPECT_THAT(text, testing::HasSubstr("] do a  <Opus|a>\n"));
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("\u26A1")));
}

TEST_F(CollectedModel, ReadsTheClockForEachStep) {
    addSession("a", "/w/a", now).created = now;
    processes.listingText = "7 1 1000 0.0 00:00 claude\n8 1 1000 0.0 10:00 claude\n";
    processes.directories = {{7, "/w/a"}, {8, "/w/a"}};
    // Sessions: half an hour after the last write it is no longer done. Usage: the time stamped on
    // the snapshot. Matching: ten minutes after the session began, the older process is its own.
    moments = {advancedBy(now, 1'800), advancedBy(now, 100), advancedBy(now, 600)};
    const DiagnosticDump::Model model = collect();
    EXPECT_EQ(clockReads, 3U);
    ASSERT_EQ(model.sessions.size(), 1U);
    EXPECT_EQ(model.sessions[0].status, SessionStatus::idle);
    EXPECT_EQ(model.usage.computedAt, advancedBy(now, 100));
    ASSERT_TRUE(model.sessions[0].process.has_value());
    EXPECT_EQ(model.sessions[0].process->pid, 8);
}

TEST_F(CollectedModel, FollowsTheSettings) {
    files.addFile(home + "/.config/sallowmere/settings.json",
                  R"({"claudeRoot":"/elsewhere","fiveHourLimit":1000,"weeklyLimit":2000,)"
                  R"("claudeBinary":"~/mine"})");
    files.addFile(home + "/mine", "").executable = true;
    addSession("a", "/w/a");
    const DiagnosticDump::Model model = collect();
    EXPECT_THAT(model.sessions, IsEmpty());
    EXPECT_EQ(model.usage.fiveHour.limit, 1'000);
    EXPECT_EQ(model.usage.weekly.limit, 2'000);
    EXPECT_EQ(model.claudeBinary, home + "/mine");
}

TEST_F(CollectedModel, CountsTheUsage) {
    addSession("a", "/w/a");
    const DiagnosticDump::Model model = collect();
    EXPECT_EQ(model.usage.fiveHour.weightedTokens, 150);
    EXPECT_EQ(model.usage.weekly.weightedTokens, 150);
}

TEST_F(CollectedModel, ReadsNeitherCredentialsNorNotifications) {
    addSession("a", "/w/a");
    files.addFile(home + "/.claude/.credentials.json", "{}");
    files.addFile(home + "/.config/sallowmere/notifications/n.json", "{}");
    collect();
    const std::string settings = home + "/.config/sallowmere/settings.json";
    const std::string transcript = project + "/a.jsonl";
    EXPECT_THAT(files.opened(), ElementsAre(settings, transcript, transcript));
    EXPECT_THAT(files.listed(), Each(testing::StartsWith(home + "/.claude/projects")));
}

TEST_F(CollectedModel, KeepsNothingForTheNextTime) {
    addSession("a", "/w/a");
    moments.insert(moments.end(), 3, now);
    const DiagnosticDump::Model first = collect();
    files.forget();
    const DiagnosticDump::Model second = collect();
    EXPECT_EQ(second.usage, first.usage);
    EXPECT_EQ(second.sessions, first.sessions);
    EXPECT_EQ(files.opened().size(), 3U);
}

} // namespace
} // namespace sallowmere
