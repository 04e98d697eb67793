// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Usage/UsageCalculator.h"
#include "Support/FakeFileSystem.h"
#include "Support/Times.h"

#include <QDateTime>
#include <QTimeZone>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace sallowmere {

/// The parts of an assistant's line that matter to the usage. Members are JSON values as written.
struct Message {
    std::string id = R"("msg_1")";
    std::string time = R"("2026-06-10T11:00:00.000Z")";
    std::string model = R"("claude-sonnet-4-5")";
    std::string usage = R"({"input_tokens":1})";
};

/// A line as the assistant writes it, with its line feed.
inline std::string lineOf(const Message& message) {
    return R"({"parentUuid":"7c1d","isSidechain":false,"message":{"model":)" + message.model
           + R"(,"id":)" + message.id
           + R"(,"type":"message","role":"assistant","content":[{"type":"text","text":"Done."}],)"
           + R"("stop_reason":"end_turn","usage":)" + message.usage
           + R"(},"type":"assistant","uuid":"90ab","timestamp":)" + message.time
           + R"(,"cwd":"/home/user/code","sessionId":"5f0e","version":"2.1.329"})" + "\n";
}

inline std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

/// The moment as a transcript spells it, to the millisecond.
inline std::string spelled(Timestamp time) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time);
    return QDateTime::fromMSecsSinceEpoch(milliseconds.time_since_epoch().count(), QTimeZone::utc())
        .toString(Qt::ISODateWithMs)
        .toStdString();
}

inline std::string inputTokens(const std::string& count) {
    return R"({"input_tokens":)" + count + '}';
}

/// A line of one message that weighs `tokens`, by default an hour before the tests' `now`.
inline std::string messageLine(const std::string& id, int tokens) {
    return lineOf({.id = quoted(id), .usage = inputTokens(std::to_string(tokens))});
}

inline std::string messageLine(const std::string& id, int tokens, Timestamp time) {
    return lineOf({.id = quoted(id),
                   .time = quoted(spelled(time)),
                   .usage = inputTokens(std::to_string(tokens))});
}

/// A calculator over files in memory, all allowances at their least so that the 5-hour limit
/// shows the largest block.
class UsageTest : public testing::Test {
protected:
    const std::string root = "/home/user/.claude/projects";
    Timestamp now = at("2026-06-10T12:00:00Z");
    FakeFileSystem files;
    Settings settings;
    UsageCalculator calculator{files};

    UsageTest() {
        settings.claudeRoot = root;
        settings.fiveHourLimit = 1;
        settings.weeklyLimit = 1;
        settings.weeklyFableLimit = 1;
        files.addDirectory(root);
    }

    /// Files and samples count while they are later.
    Timestamp horizon() const { return advancedBy(now, -622'800); }

    std::string pathOf(const std::string& name) const { return root + '/' + name; }

    FakeFileSystem::File& write(const std::string& name, std::string content) {
        return files.addFile(pathOf(name), std::move(content), now);
    }

    void append(const std::string& name, const std::string& content) {
        files.file(pathOf(name)).content += content;
    }

    UsageSnapshot compute() { return calculator.compute(settings, now); }
    double weeklyTokens() { return compute().weekly.weightedTokens; }
    double fableTokens() { return compute().weeklyFable.value().weightedTokens; }
    /// The largest block among all samples later than the horizon.
    double peak() { return compute().fiveHour.limit; }

    /// What a calculator that has seen nothing yet makes of the present files.
    UsageSnapshot computeAnew() const { return UsageCalculator(files).compute(settings, now); }
};

} // namespace sallowmere
