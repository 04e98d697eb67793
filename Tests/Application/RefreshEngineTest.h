// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Application/AppStateTest.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "Support/FakeProcessTable.h"
#include "Support/TranscriptLines.h"

#include <functional>

namespace sallowmere {

/// A process table that lets a test look in while the processes are listed.
class WatchedProcessTable : public FakeProcessTable {
public:
    std::function<void()> whileListing = [] {};

    std::string listing() const override {
        whileListing();
        return FakeProcessTable::listing();
    }
};

/// An engine over fakes that keeps the model of `AppStateTest` current. Its jobs run when the test
/// lets them.
class RefreshEngineTest : public AppStateTest {
protected:
    struct Fetch {
        double timeout = 0;
        UsageAPI::Completion completion;
    };

    /// Starts a new engine for a new model with the present `settings`.
    void begin() {
        restart();
        engine = RefreshEngine::create(*state, services());
        engine->start();
    }

    /// Runs the jobs and hands over what they found, until nothing waits any more.
    void settle() {
        while (workQueue.waiting() + queue.posted() > 0) {
            workQueue.runAll();
            queue.runPosted();
        }
    }

    /// Starts, and lets the first jobs run.
    void beginAndSettle() {
        begin();
        settle();
    }

    /// Lets time pass in steps of half a second, in each of which the jobs run.
    void pass(double seconds) {
        const auto steps = static_cast<int>(2 * seconds);
        for (int step = 0; step < steps; ++step) {
            queue.advance(0.5);
            settle();
        }
    }

    /// A transcript in the project "-w" that was last written so many seconds ago.
    FakeFileSystem::File& addTranscript(const std::string& name,
                                        const std::vector<std::string>& lines, double age = 0) {
        return files.addFile(pathOf(name), transcript::file(lines), advancedBy(queue.now(), -age));
    }

    std::string pathOf(const std::string& name) const {
        return home + "/.claude/projects/-w/" + name + ".jsonl";
    }

    /// A prompt in a session of that id, given in a working directory.
    static std::string promptIn(const std::string& cwd, const std::string& sessionId,
                                const std::string& text = "Hello") {
        return transcript::prompt(text, "\"cwd\":" + transcript::json(cwd) + ",\"sessionId\":"
                                            + transcript::json(sessionId) + ',');
    }

    std::string notification(const std::string& name) const {
        return home + "/.config/sallowmere/notifications/" + name;
    }

    /// The titles of the model's sessions, in order; of those here the prompts.
    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const SessionInfo& each : state->sessions()) {
            result.push_back(each.title.toStdString());
        }
        return result;
    }

    static OfficialUsage officialFigures(double fraction, Timestamp fetchedAt) {
        OfficialUsage official;
        official.session = OfficialUsage::Limit{fraction, advancedBy(fetchedAt, 3'600)};
        official.fetchedAt = fetchedAt;
        return official;
    }

    FakeWorkQueue workQueue;
    WatchedProcessTable processes;
    std::vector<Fetch> fetches;
    /// What the engine reads the time from; the model has its own.
    Clock engineClock = queue.clock();
    /// Held by the engine, and by nobody else.
    std::weak_ptr<int> heldByEngine;
    std::shared_ptr<RefreshEngine> engine;

private:
    RefreshServices services() {
        const auto held = std::make_shared<int>();
        heldByEngine = held;
        return {[this] { return engineClock(); },
                queue,
                workQueue,
                files,
                processes,
                home,
                [this, held](double timeout, UsageAPI::Completion completion) {
                    fetches.push_back({timeout, std::move(completion)});
                }};
    }
};

} // namespace sallowmere
