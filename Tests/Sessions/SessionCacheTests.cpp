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
const std::string path = "/root/a/one.jsonl";

Timestamp ago(double seconds) {
    return advancedBy(now, -seconds);
}

class SessionCache : public testing::Test {
protected:
    SessionCache() {
        settings.claudeRoot = "/root";
        settings.maxSessions = 50;
    }

    std::vector<SessionInfo> scan() {
        files.forget();
        return scanner.scan(settings, now);
    }

    FakeFileSystem files;
    Settings settings;
    SessionScanner scanner{files};
};

TEST_F(SessionCache, OpensNoFileThatDidNotChange) {
    for (int i = 0; i < 50; ++i) {
        files.addFile("/root/a/" + std::to_string(i) + ".jsonl", prompt(std::to_string(i)), ago(i));
    }
    const std::vector<SessionInfo> first = scan();
    EXPECT_THAT(first, SizeIs(50));
    EXPECT_THAT(files.opened(), SizeIs(50));
    EXPECT_EQ(scan(), first);
    EXPECT_THAT(files.opened(), IsEmpty());
    EXPECT_EQ(files.bytesRead(), 0U);
}

TEST_F(SessionCache, ReadsTheEndOfTheOneFileThatChangedOnce) {
    for (int i = 0; i < 50; ++i) {
        files.addFile("/root/a/" + std::to_string(i) + ".jsonl",
                      std::string(1'000'000, '\n') + prompt("Hello"), ago(100 + i));
    }
    scan();
    FakeFileSystem::File& changed = files.file("/root/a/7.jsonl");
    changed.content += '\n' + prompt("More");
    changed.modified = ago(1);
    const std::vector<SessionInfo> sessions = scan();
    EXPECT_THAT(files.opened(), ElementsAre("/root/a/7.jsonl"));
    EXPECT_EQ(files.bytesRead(), 524'288U);
    EXPECT_EQ(utf8(sessions.front().lastPrompt), "More");
}

TEST_F(SessionCache, ReadsAgainWhenSizeOrTimeDiffers) {
    FakeFileSystem::File& file = files.addFile(path, prompt("one"), ago(100));
    scan();
    file.content = prompt("two");
    EXPECT_EQ(utf8(scan().front().lastPrompt), "one");
    EXPECT_THAT(files.opened(), IsEmpty());
    file.modified = ago(200);
    EXPECT_EQ(utf8(scan().front().lastPrompt), "two");
    file.content = prompt("three");
    EXPECT_EQ(utf8(scan().front().lastPrompt), "three");
    EXPECT_THAT(files.opened(), ElementsAre(path));
}

TEST_F(SessionCache, JudgesAnUnchangedFileByThePresentTime) {
    files.addFile(path, prompt("one"), ago(60));
    EXPECT_EQ(scan().front().status, SessionStatus::working);
    EXPECT_EQ(scanner.scan(settings, ago(-60)).front().status, SessionStatus::done);
    EXPECT_EQ(scanner.scan(settings, ago(-3'600)).front().status, SessionStatus::idle);
}

TEST_F(SessionCache, TellsFilesOfOneNameApart) {
    files.addFile("/root/a/one.jsonl", prompt("a"), ago(1));
    files.addFile("/root/b/one.jsonl", prompt("b"), ago(1));
    scan();
    const std::vector<SessionInfo> sessions = scan();
    EXPECT_EQ(utf8(sessions[0].lastPrompt), "a");
    EXPECT_EQ(utf8(sessions[1].lastPrompt), "b");
}

TEST_F(SessionCache, ForgetsAFileThatLeavesTheList) {
    settings.maxSessions = 1;
    files.addFile(path, prompt("one"), ago(100));
    scan();
    files.addFile("/root/a/newer.jsonl", prompt("newer"), ago(10));
    EXPECT_EQ(utf8(scan().front().lastPrompt), "newer");
    files.remove("/root/a/newer.jsonl");
    EXPECT_EQ(utf8(scan().front().lastPrompt), "one");
    EXPECT_THAT(files.opened(), ElementsAre(path));
}

TEST_F(SessionCache, ForgetsAFileThatWasGone) {
    files.addFile(path, prompt("one"), ago(100));
    scan();
    files.remove(path);
    EXPECT_THAT(scan(), IsEmpty());
    files.addFile(path, prompt("two"), ago(100));
    EXPECT_EQ(utf8(scan().front().lastPrompt), "two");
}

TEST_F(SessionCache, ForgetsEverythingWhenTheRootIsGone) {
    files.addFile(path, prompt("one"), ago(100));
    scan();
    settings.claudeRoot = "/nowhere";
    EXPECT_THAT(scan(), IsEmpty());
    settings.claudeRoot = "/root";
    EXPECT_THAT(scan(), SizeIs(1));
    EXPECT_THAT(files.opened(), ElementsAre(path));
}

TEST_F(SessionCache, ForgetsAFileThatYieldsNothing) {
    FakeFileSystem::File& file = files.addFile(path, prompt("one"), ago(100));
    scan();
    file.modified = ago(50);
    file.readable = false;
    EXPECT_THAT(scan(), IsEmpty());
    // Even when it looks again as it did at first.
    file.modified = ago(100);
    file.readable = true;
    EXPECT_THAT(scan(), SizeIs(1));
    EXPECT_THAT(files.opened(), ElementsAre(path));
}

TEST_F(SessionCache, TriesAFileThatYieldedNothingAtEachScan) {
    FakeFileSystem::File& file = files.addFile(path, prompt("one"), ago(100));
    file.failsAt = 5;
    EXPECT_THAT(scan(), IsEmpty());
    file.failsAt = UINT64_MAX;
    EXPECT_THAT(scan(), SizeIs(1));
}

} // namespace
} // namespace sallowmere
