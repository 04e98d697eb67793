// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sessions/SessionRecords.h"

#include "Support/Texts.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(SessionStatus, HasAWordForEachCase) {
    EXPECT_EQ(utf8(rawValue(SessionStatus::working)), "working");
    EXPECT_EQ(utf8(rawValue(SessionStatus::waiting)), "waiting");
    EXPECT_EQ(utf8(rawValue(SessionStatus::done)), "done");
    EXPECT_EQ(utf8(rawValue(SessionStatus::idle)), "idle");
}

TEST(SessionStatus, IsBuiltFromItsWordAlone) {
    EXPECT_EQ(sessionStatus(u"working"), SessionStatus::working);
    EXPECT_EQ(sessionStatus(u"waiting"), SessionStatus::waiting);
    EXPECT_EQ(sessionStatus(u"done"), SessionStatus::done);
    EXPECT_EQ(sessionStatus(u"idle"), SessionStatus::idle);
    EXPECT_EQ(sessionStatus(u"Waiting"), std::nullopt);
    EXPECT_EQ(sessionStatus(u"waiting "), std::nullopt);
    EXPECT_EQ(sessionStatus(u"busy"), std::nullopt);
    EXPECT_EQ(sessionStatus(u""), std::nullopt);
}

TEST(SessionInfo, DiffersInItsProcessAlone) {
    SessionInfo left;
    left.id = QStringLiteral("/p/a.jsonl");
    SessionInfo right = left;
    EXPECT_EQ(left, right);
    right.process = ClaudeProcess{};
    EXPECT_NE(left, right);
    left.process = ClaudeProcess{};
    EXPECT_EQ(left, right);
    right.process->cpuPercent = 1.5;
    EXPECT_NE(left, right);
}

TEST(LogEvent, DiffersInItsLabelAlone) {
    LogEvent left;
    left.id = QStringLiteral("7.1");
    LogEvent right = left;
    right.label = QStringLiteral("other");
    EXPECT_EQ(left.id, right.id);
    EXPECT_NE(left, right);
}

TEST(AskQuestion, DiffersInTheOrderOfItsOptions) {
    const AskQuestion left{QStringLiteral("?"), {QStringLiteral("a"), QStringLiteral("b")}};
    const AskQuestion right{QStringLiteral("?"), {QStringLiteral("b"), QStringLiteral("a")}};
    EXPECT_NE(left, right);
}

} // namespace
} // namespace sallowmere
