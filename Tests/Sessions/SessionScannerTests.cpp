// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionScanner.h"

#include "Support/FakeFileSystem.h"
#include "Support/Texts.h"
#include "Support/Times.h"
#include "Support/TranscriptLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sallowmere {
namespace {

using namespace transcript;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Timestamp now = at("2026-11-20T12:00:00Z");

Timestamp ago(double seconds) {
    return advancedBy(now, -seconds);
}

class SessionScanning : public testing::Test {
protected:
    SessionScanning() {
        settings.claudeRoot = "/root";
        settings.showIdleHours = 12;
        settings.maxSessions = 50;
    }

    /// Adds a transcript with one prompt, written so many seconds ago.
    FakeFileSystem::File& add(const std::string& name, double age) {
        return files.addFile("/root/" + name, prompt("Hello"), ago(age));
    }

    std::vector<SessionInfo> scan() { return scanner.scan(settings, now); }

    /// The paths below the root of what a scan lists.
    std::vector<std::string> listed() {
        std::vector<std::string> names;
        for (const SessionInfo& session : scan()) {
            names.push_back(utf8(session.id).substr(settings.claudeRoot.size() + 1));
        }
        return names;
    }

    FakeFileSystem files;
    Settings settings;
    SessionScanner scanner{files};
};

TEST_F(SessionScanning, ListsNothingWithoutARoot) {
    EXPECT_THAT(listed(), IsEmpty());
    files.addFile("/p/a.jsonl", prompt("Hello"), now);
    settings.claudeRoot = "";
    EXPECT_THAT(scan(), IsEmpty());
    settings.claudeRoot = "/p/a.jsonl";
    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(SessionScanning, ListsTheNewestFirst) {
    add("b/old.jsonl", 300);
    add("a/middle.jsonl", 200);
    add("b/new.jsonl", 100);
    add("c/newest.jsonl", -100);
    EXPECT_THAT(listed(),
                ElementsAre("c/newest.jsonl", "b/new.jsonl", "a/middle.jsonl", "b/old.jsonl"));
}

TEST_F(SessionScanning, KeepsTheOrderOfTheListingAtEqualTimes) {
    std::vector<std::string> expected;
    for (int i = 10; i < 50; ++i) {
        const std::string name = (i % 2 == 0 ? "a/" : "b/") + std::to_string(i) + ".jsonl";
        add(name, 100);
        expected.push_back(name);
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(listed(), expected);
}

TEST_F(SessionScanning, ListsTranscriptsOnly) {
    add("a/one.jsonl", 1);
    add("a/.hidden.jsonl", 2);
    add("a/my-agent-1.jsonl", 3);
    add("a/agent.jsonl", 4);
    add("a/two.x.jsonl", 5);
    for (const char* name : {"agent-1.jsonl", "agent-.jsonl", "one.json", "one.JSONL",
                             "one.jsonl.bak", "one.xjsonl", "jsonl", ".jsonl", "one.jsonl~"}) {
        add("a/" + std::string(name), 1);
    }
    EXPECT_THAT(listed(), ElementsAre("a/one.jsonl", "a/.hidden.jsonl", "a/my-agent-1.jsonl",
                                      "a/agent.jsonl", "a/two.x.jsonl"));
}

TEST_F(SessionScanning, LooksIntoEachProjectButNoDeeper) {
    add("a/one.jsonl", 1);
    add(".hidden/two.jsonl", 2);
    add("agent-x/three.jsonl", 3);
    add("loose.jsonl", 1);
    add("a/6f1c/subagents/deep.jsonl", 1);
    add("a/memory/deep.jsonl", 1);
    EXPECT_THAT(listed(), ElementsAre("a/one.jsonl", ".hidden/two.jsonl", "agent-x/three.jsonl"));
}

TEST_F(SessionScanning, FollowsLinks) {
    files.addFile("/elsewhere/one.jsonl", prompt("Hello"), ago(1));
    files.addFile("/elsewhere/two.txt", prompt("Hello"), ago(2));
    files.addLink("/root/linked", "/elsewhere");
    files.addLink("/root/a/link.jsonl", "/elsewhere/two.txt");
    files.addLink("/root/a/broken.jsonl", "/elsewhere/gone.jsonl");
    files.addLink("/root/a/directory.jsonl", "/elsewhere");
    files.addLink("/root/gone", "/nowhere");
    EXPECT_THAT(listed(), ElementsAre("linked/one.jsonl", "a/link.jsonl"));
}

TEST_F(SessionScanning, LosesNothingToWhatIsNoFile) {
    add("a/one.jsonl", 1);
    add("a/fifo.jsonl", 1).type = EntryType::other;
    files.addDirectory("/root/a/directory.jsonl");
    files.addFile("/root/fifo", "", now).type = EntryType::other;
    EXPECT_THAT(listed(), ElementsAre("a/one.jsonl"));
    EXPECT_THAT(files.opened(), ElementsAre("/root/a/one.jsonl"));
}

TEST_F(SessionScanning, LosesNothingToADirectoryThatCannotBeListed) {
    add("a/one.jsonl", 1);
    add("b/two.jsonl", 1);
    add("c/three.jsonl", 2);
    files.forbidListing("/root/b");
    EXPECT_THAT(listed(), ElementsAre("a/one.jsonl", "c/three.jsonl"));
    files.forbidListing("/root");
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(SessionScanning, LeavesOutWhatIsOlderThanTheHorizon) {
    settings.showIdleHours = 0.1;
    add("a/edge.jsonl", 360);
    add("a/older.jsonl", 360.000001);
    add("a/younger.jsonl", 359);
    add("a/future.jsonl", -86'400);
    EXPECT_THAT(listed(), ElementsAre("a/future.jsonl", "a/younger.jsonl", "a/edge.jsonl"));
}

TEST_F(SessionScanning, KeepsTheNewestOfMany) {
    settings.maxSessions = 3;
    for (const int age : {400, 100, 500, 200, 300}) {
        add("a/" + std::to_string(age) + ".jsonl", age);
    }
    EXPECT_THAT(listed(), ElementsAre("a/100.jsonl", "a/200.jsonl", "a/300.jsonl"));
    EXPECT_THAT(files.opened(), SizeIs(3));
}

TEST_F(SessionScanning, LetsAFileThatYieldsNothingTakeAPlace) {
    settings.maxSessions = 2;
    files.addFile("/root/a/empty.jsonl", "", ago(1));
    add("a/unreadable.jsonl", 2).readable = false;
    add("a/one.jsonl", 3);
    EXPECT_THAT(listed(), IsEmpty());
    settings.maxSessions = 3;
    EXPECT_THAT(listed(), ElementsAre("a/one.jsonl"));
}

TEST_F(SessionScanning, ListsAFileWithoutAnyKnownLine) {
    files.addFile("/root/-home-user-lamp/6f1c.jsonl", "noise\n", ago(10));
    const std::vector<SessionInfo> sessions = scan();
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(utf8(sessions[0].sessionId), "6f1c.jsonl");
    EXPECT_EQ(utf8(sessions[0].title), "lamp");
    EXPECT_EQ(sessions[0].status, SessionStatus::working);
}

TEST_F(SessionScanning, TellsWhenTheTranscriptBegan) {
    add("a/born.jsonl", 60).created = ago(3'600);
    add("a/unborn.jsonl", 120);
    const std::vector<SessionInfo> sessions = scan();
    ASSERT_THAT(sessions, SizeIs(2));
    EXPECT_EQ(sessions[0].startedAt, ago(3'600));
    EXPECT_EQ(sessions[0].lastActivityAt, ago(60));
    EXPECT_EQ(sessions[1].startedAt, ago(120));
}

TEST_F(SessionScanning, DerivesTheStatusFromTranscriptAndTime) {
    const std::string turn = prompt("Hello", time("2026-11-20T11:48:00Z"));
    files.addFile("/root/a/working.jsonl", turn, ago(60));
    files.addFile("/root/a/done.jsonl", turn + '\n' + turnEnd(time("2026-11-20T11:50:00Z")),
                  ago(600));
    files.addFile("/root/a/waiting.jsonl", turn + '\n' + assistant(question("Which?")), ago(601));
    files.addFile("/root/a/idle.jsonl", turn + '\n' + assistant(plan("Do it")), ago(7'200));
    const std::vector<SessionInfo> sessions = scan();
    ASSERT_THAT(sessions, SizeIs(4));
    EXPECT_EQ(sessions[0].status, SessionStatus::working);
    EXPECT_EQ(sessions[1].status, SessionStatus::done);
    EXPECT_EQ(sessions[2].status, SessionStatus::waiting);
    EXPECT_EQ(utf8(sessions[2].activity), "Asks: Which?");
    EXPECT_EQ(sessions[3].status, SessionStatus::idle);
    EXPECT_FALSE(sessions[3].plan);
}

TEST_F(SessionScanning, SurvivesNamesThatAreNoText) {
    files.addFile("/root/-home-\xFF/\xC3.jsonl", prompt("Hello"), ago(1));
    const std::vector<SessionInfo> sessions = scan();
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(utf8(sessions[0].projectName), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8(sessions[0].sessionId), "\xEF\xBF\xBD.jsonl");
}

TEST_F(SessionScanning, KeepsTheNewestOfThoseWhosePathsReadTheSame) {
    files.addFile("/root/a/\xFD.jsonl", prompt("old"), ago(3));
    files.addFile("/root/a/\xFE.jsonl", prompt("new"), ago(1));
    files.addFile("/root/a/\xFF.jsonl", prompt("middle"), ago(2));
    files.addFile("/root/a/x.jsonl", prompt("other"), ago(4));
    const std::vector<SessionInfo> sessions = scan();
    ASSERT_THAT(sessions, SizeIs(2));
    EXPECT_EQ(utf8(sessions[0].lastPrompt), "new");
    EXPECT_EQ(utf8(sessions[1].lastPrompt), "other");
}

} // namespace
} // namespace sallowmere
