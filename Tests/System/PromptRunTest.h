// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProgramRunner.h"
#include "Sallowmere/Processes/PromptRunner.h"
#include "System/EventLoop.h"
#include "System/ScriptedAssistant.h"

#include "Support/ImmediateQueue.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <memory>

namespace sallowmere {

/// Sends prompts to a scripted assistant, with an application whose event loop runs while the test
/// waits.
class PromptRunTest : public testing::Test {
protected:
    /// What a completion was given: an error, or none.
    using Result = std::optional<std::string>;

    explicit PromptRunTest(const std::string& homeName = "home") : assistant(homeName) {}

    static SessionInfo session(const std::string& id) {
        SessionInfo session;
        session.sessionId = QString::fromStdString(id);
        return session;
    }

    PromptRunner::Services services() {
        return {*files, *programs, assistant.home().path(), queue_, queue_};
    }

    void send(const QString& prompt, const SessionInfo& session) {
        PromptRunner::send(
            prompt, session, settings, services(),
            [this, id = utf8(session.sessionId)](const std::optional<QString>& error) {
                completions.emplace_back(id, utf8(error));
            });
    }

    bool eventuallyCompleted(std::size_t count = 1) {
        return EventLoop::runUntil([&] { return completions.size() >= count; });
    }

    /// The outcome of a run that does this, started and waited for.
    Result outcomeOf(std::string_view deeds) {
        assistant.does("abc", deeds);
        completions.clear();
        send(QStringLiteral("Hello"), session("abc"));
        EXPECT_TRUE(completions.empty());
        EXPECT_TRUE(eventuallyCompleted());
        EXPECT_EQ(completions.size(), 1U);
        return completions.empty() ? "no completion" : completions.front().second;
    }

    /// The error of a run that cannot be started, which is told at once.
    Result refusal(const QString& prompt = QStringLiteral("Hello"),
                   const SessionInfo& to = session("refused")) {
        completions.clear();
        send(prompt, to);
        EXPECT_EQ(completions.size(), 1U);
        EventLoop::runReady();
        EXPECT_EQ(completions.size(), 1U);
        EXPECT_FALSE(assistant.wasCalled(utf8(to.sessionId)));
        return completions.empty() ? "no completion" : completions.front().second;
    }

    ScriptedAssistant assistant;
    Settings settings = Settings::defaults(assistant.home().path());
    /// By session id, in their order.
    std::vector<std::pair<std::string, Result>> completions;
    std::unique_ptr<const FileSystem> files = std::make_unique<LinuxFileSystem>();

private:
    EventLoop loop_;
    ImmediateQueue queue_;

protected:
    std::unique_ptr<ProgramRunner> programs = std::make_unique<LinuxProgramRunner>();
};

} // namespace sallowmere
