// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Application/AppStateTest.h"

#include <functional>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string any = "will change";

class Announcements : public AppStateTest {
protected:
    /// What was announced while `change` ran, in order.
    std::vector<std::string> during(const std::function<void()>& change) {
        std::vector<std::string> names;
        QObject watcher;
        QObject::connect(state.get(), &AppState::willChange, &watcher,
                         [&] { names.push_back(any); });
        const auto watch = [&](auto stream, const char* name) {
            QObject::connect(state.get(), stream, &watcher,
                             [&names, name](const auto&) { names.emplace_back(name); });
        };
        watch(&AppState::sessionsWillChange, "sessions");
        watch(&AppState::orphanProcessesWillChange, "orphanProcesses");
        watch(&AppState::permissionRequestsWillChange, "permissionRequests");
        watch(&AppState::recentCompletionsWillChange, "recentCompletions");
        watch(&AppState::usageWillChange, "usage");
        watch(&AppState::expandedWillChange, "expanded");
        watch(&AppState::pinnedWillChange, "pinned");
        watch(&AppState::selectedSessionIdWillChange, "selectedSessionId");
        watch(&AppState::contentHeightWillChange, "contentHeight");
        watch(&AppState::listContentHeightWillChange, "listContentHeight");
        watch(&AppState::promptingSessionsWillChange, "promptingSessions");
        watch(&AppState::promptErrorsWillChange, "promptErrors");
        watch(&AppState::editingPromptWillChange, "editingPrompt");
        change();
        return names;
    }

    /// `change` gives a property a value: whoever is told of it, by either signal, is told before
    /// it is stored, and by its own is handed it.
    template <typename Getter, typename Value>
    void expectToldBeforeStored(Getter getter, void (AppState::*stream)(const Value&),
                                const std::function<void()>& change, const Value& value) {
        const Value before = std::invoke(getter, *state);
        EXPECT_NE(before, value);
        int told = 0;
        QObject watcher;
        const auto firstTold = QObject::connect(state.get(), &AppState::willChange, &watcher, [&] {
            EXPECT_EQ(std::invoke(getter, *state), before);
        });
        QObject::connect(state.get(), stream, &watcher, [&](const Value& delivered) {
            EXPECT_EQ(delivered, value);
            EXPECT_EQ(std::invoke(getter, *state), before);
            QObject::disconnect(firstTold);
            ++told;
        });
        change();
        EXPECT_EQ(told, 1);
        EXPECT_EQ(std::invoke(getter, *state), value);
    }
};

TEST_F(Announcements, ComeBeforeTheScannedListsAreStored) {
    const std::vector<SessionInfo> sessions{session("a")};
    const std::vector<ClaudeProcess> orphans{ClaudeProcess{7, 1.5, {}, 60, {}, {}, {}}};
    const std::vector<PermissionRequest> permissions{request("p.json")};
    const auto apply = [&] { state->applyScan(sessions, orphans, permissions); };
    expectToldBeforeStored(&AppState::sessions, &AppState::sessionsWillChange, apply, sessions);
    restart();
    expectToldBeforeStored(&AppState::orphanProcesses, &AppState::orphanProcessesWillChange, apply,
                           orphans);
    restart();
    expectToldBeforeStored(&AppState::permissionRequests, &AppState::permissionRequestsWillChange,
                           apply, permissions);
}

TEST_F(Announcements, ComeBeforeACompletionIsForgotten) {
    scan({session("a")});
    scan({session("a", SessionStatus::done)});
    expectToldBeforeStored(
        &AppState::recentCompletions, &AppState::recentCompletionsWillChange,
        [this] { state->jump(session("a")); }, AppState::Completions());
}

TEST_F(Announcements, ComeBeforeUsageIsStored) {
    UsageSnapshot usage;
    usage.fiveHour.weightedTokens = 7;
    expectToldBeforeStored(
        &AppState::usage, &AppState::usageWillChange, [&] { state->setUsage(usage); }, usage);
}

TEST_F(Announcements, ComeBeforeHeightsAreStored) {
    expectToldBeforeStored(
        &AppState::contentHeight, &AppState::contentHeightWillChange,
        [this] { state->setContentHeight(310.5); }, 310.5);
    expectToldBeforeStored(
        &AppState::listContentHeight, &AppState::listContentHeightWillChange,
        [this] { state->setListContentHeight(120.25); }, 120.25);
}

TEST_F(Announcements, ComeBeforeThePanelsStateIsStored) {
    expectToldBeforeStored(
        &AppState::expanded, &AppState::expandedWillChange, [this] { state->hoverChanged(true); },
        true);
    expectToldBeforeStored(
        &AppState::pinned, &AppState::pinnedWillChange, [this] { state->togglePin(); }, true);
    expectToldBeforeStored(
        &AppState::editingPrompt, &AppState::editingPromptWillChange,
        [this] { state->setEditingPrompt(true); }, true);
    expectToldBeforeStored(
        &AppState::selectedSessionId, &AppState::selectedSessionIdWillChange,
        [this] { state->toggleSelection("a"); }, std::optional<QString>("a"));
}

TEST_F(Announcements, ComeBeforeThePromptsStateIsStored) {
    expectToldBeforeStored(
        &AppState::promptingSessions, &AppState::promptingSessionsWillChange,
        [this] { state->sendPrompt("Go", session("a")); }, QSet<QString>{"a"});
    expectToldBeforeStored(
        &AppState::promptErrors, &AppState::promptErrorsWillChange,
        [this] { sent.at(0).completion(QStringLiteral("No luck")); },
        AppState::PromptErrors{{"a", "No luck"}});
}

TEST_F(Announcements, AreMadeOfEqualValuesToo) {
    const auto expectBoth = [this](const char* name, const std::function<void()>& change) {
        EXPECT_THAT(during(change), ElementsAre(any, name));
        EXPECT_THAT(during(change), ElementsAre(any, name));
    };
    expectBoth("usage", [this] { state->setUsage({}); });
    expectBoth("contentHeight", [this] { state->setContentHeight(0); });
    expectBoth("listContentHeight", [this] { state->setListContentHeight(0); });
    expectBoth("editingPrompt", [this] { state->setEditingPrompt(false); });
    expectBoth("expanded", [this] { state->hoverChanged(true); });
    expectBoth("recentCompletions", [this] { state->jump(session("a")); });
    expectBoth("permissionRequests", [this] { state->respondToPermission(request("p"), 1); });
}

TEST_F(Announcements, OfAScanComeInItsOrderWhateverItBrings) {
    const std::vector<std::string> order{any, "recentCompletions", any, "sessions",
                                         any, "orphanProcesses",   any, "permissionRequests"};
    EXPECT_THAT(during([this] { scan({}); }), ElementsAreArray(order));
    EXPECT_THAT(during([this] { scan({session("a"), session("b")}); }), ElementsAreArray(order));
    EXPECT_THAT(during([this] { scan({session("a"), session("b")}); }), ElementsAreArray(order));
}

TEST_F(Announcements, OfACompletionComeFirstAndOfThePeekLast) {
    scan({session("a"), session("b")});
    const auto names = during([this] {
        scan({session("a", SessionStatus::done), session("b", SessionStatus::done)},
             {request("p")});
    });
    EXPECT_THAT(names, ElementsAre(any, "recentCompletions", any, "recentCompletions", any,
                                   "recentCompletions", any, "sessions", any, "orphanProcesses",
                                   any, "permissionRequests", any, "expanded"));
}

TEST_F(Announcements, OfPinningPinFirst) {
    EXPECT_THAT(during([this] { state->togglePin(); }),
                ElementsAre(any, "pinned", any, "expanded"));
    EXPECT_THAT(during([this] { state->togglePin(); }), ElementsAre(any, "pinned"));
}

TEST_F(Announcements, OfClosingCloseFirst) {
    state->hoverChanged(true);
    const auto names = during([this] {
        state->hoverChanged(false);
        queue.advance(1);
    });
    EXPECT_THAT(names, ElementsAre(any, "expanded", any, "selectedSessionId"));
}

TEST_F(Announcements, OfAPromptTellThatItRunsFirst) {
    EXPECT_THAT(during([this] { state->sendPrompt("Go", session("a")); }),
                ElementsAre(any, "promptingSessions", any, "promptErrors"));
    EXPECT_THAT(during([this] { sent.at(0).completion(std::nullopt); }),
                ElementsAre(any, "promptingSessions", any, "promptErrors"));
    EXPECT_THAT(during([this] { state->sendPrompt("Go", running(session("a"))); }),
                ElementsAre(any, "promptErrors"));
}

TEST_F(Announcements, AreNotMadeWhenNothingIsAssigned) {
    EXPECT_THAT(during([this] { state->hoverChanged(false); }), IsEmpty());
    EXPECT_THAT(during([this] { state->sendPrompt(" ", session("a")); }), IsEmpty());
}

TEST_F(Announcements, BeginWithAnEmptyModel) {
    EXPECT_THAT(state->sessions(), IsEmpty());
    EXPECT_THAT(state->orphanProcesses(), IsEmpty());
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
    EXPECT_TRUE(state->recentCompletions().isEmpty());
    EXPECT_EQ(state->usage(), UsageSnapshot());
    EXPECT_FALSE(state->expanded());
    EXPECT_FALSE(state->pinned());
    EXPECT_EQ(state->selectedSessionId(), std::nullopt);
    EXPECT_EQ(state->contentHeight(), 0);
    EXPECT_EQ(state->listContentHeight(), 0);
    EXPECT_TRUE(state->promptingSessions().isEmpty());
    EXPECT_TRUE(state->promptErrors().isEmpty());
    EXPECT_FALSE(state->editingPrompt());
    EXPECT_EQ(state->settings(), settings);
}

TEST_F(Announcements, TellASubscriberOfOneThingWhatElseHasChangedAlready) {
    std::vector<std::size_t> sessionsWhenRequestsCame;
    QObject::connect(state.get(), &AppState::permissionRequestsWillChange, state.get(),
                     [&] { sessionsWhenRequestsCame.push_back(state->sessions().size()); });
    scan({session("a")}, {request("p")});
    EXPECT_THAT(sessionsWhenRequestsCame, ElementsAre(1U));
}

} // namespace
} // namespace sallowmere
