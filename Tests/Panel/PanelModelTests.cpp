// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelModel.h"

#include "Application/AppStateTest.h"
#include "Sallowmere/Panel/PanelContent.h"

#include <QMetaProperty>

#include <memory>
#include <vector>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What the views see of a model that changes.
class PanelModelTest : public AppStateTest {
protected:
    PanelModelTest() {
        const auto note = [this](const char* what) {
            return [this, what] { announced.emplace_back(what); };
        };
        QObject::connect(&panel(), &PanelModel::expandedChanged, &panel(), note("expanded"));
        QObject::connect(&panel(), &PanelModel::pinnedChanged, &panel(), note("pinned"));
        QObject::connect(&panel(), &PanelModel::selectedIdChanged, &panel(), note("selected"));
        QObject::connect(&panel(), &PanelModel::barChanged, &panel(), note("bar"));
        QObject::connect(&panel(), &PanelModel::usageChanged, &panel(), note("usage"));
        QObject::connect(&panel(), &PanelModel::askChanged, &panel(), note("ask"));
        QObject::connect(&panel(), &PanelModel::planChanged, &panel(), note("plan"));
    }

    PanelModel& panel() { return *panel_; }

    /// Scans, and lets the views take it over.
    void show(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> requests = {}) {
        scan(std::move(sessions), std::move(requests));
        queue.runPosted();
    }

    static std::vector<QString> titles(KeyedListModel& list, const char* property = "id") {
        std::vector<QString> texts;
        for (int row = 0; row < list.rowCount(); ++row) {
            const QVariant entry = list.data(list.index(row), Qt::UserRole);
            const QMetaObject* meta = entry.metaType().metaObject();
            const int index = meta->indexOfProperty(property);
            texts.push_back(meta->property(index).readOnGadget(entry.constData()).toString());
        }
        return texts;
    }

    std::vector<std::string> announced;

private:
    std::unique_ptr<PanelModel> panel_ = std::make_unique<PanelModel>(*state, keystrokes, queue);
};

TEST_F(PanelModelTest, ShowsTheModelThatItIsGiven) {
    EXPECT_FALSE(panel().expanded());
    EXPECT_EQ(panel().usage(), UsageRow::of(UsageSnapshot()));
    EXPECT_EQ(panel().sessions()->rowCount(), 0);
    EXPECT_EQ(panel().ask().id, "");
    EXPECT_EQ(panel().plan().id, "");
}

TEST_F(PanelModelTest, TakesChangesOverOnceTheyAreStored) {
    state->hoverChanged(true);
    state->togglePin();
    EXPECT_FALSE(panel().expanded());
    EXPECT_THAT(announced, IsEmpty());
    queue.runPosted();
    EXPECT_TRUE(panel().expanded());
    EXPECT_TRUE(panel().pinned());
    EXPECT_THAT(announced, ElementsAre("pinned", "expanded"));
}

TEST_F(PanelModelTest, IsQuietWhenAScanBringsNothingNew) {
    show({session("a"), asking(session("b"))});
    announced.clear();
    show({session("a"), asking(session("b"))});
    EXPECT_THAT(announced, IsEmpty());
}

TEST_F(PanelModelTest, IsNoLongerAskedWhenItIsGone) {
    auto other = std::make_unique<PanelModel>(*state, keystrokes, queue);
    scan({session("a")});
    other.reset();
    queue.runPosted();
}

TEST_F(PanelModelTest, ListsSessionsInTheOrderShown) {
    SessionInfo old = asking(session("old"));
    old.lastActivityAt = start - std::chrono::minutes(20);
    SessionInfo fresh = session("fresh");
    fresh.lastActivityAt = start;
    show({fresh, old});
    EXPECT_THAT(titles(*panel().sessions()), ElementsAre("old", "fresh"));
}

TEST_F(PanelModelTest, HasCards) {
    show({session("a"), session("b")});
    show({session("a", SessionStatus::done), planning(asking(session("b")))},
         {request("p"), request("q"), request("r"), request("s")});
    EXPECT_THAT(titles(*panel().completions()), ElementsAre("a"));
    EXPECT_THAT(titles(*panel().approvals()), ElementsAre("p", "q", "r"));
    EXPECT_EQ(panel().ask().id, "b");
    EXPECT_EQ(panel().ask().question, "Which?");
    EXPECT_EQ(panel().ask().options, QStringList{"This"});
    EXPECT_EQ(panel().plan(), (PlanRow{QStringLiteral("b"), QStringLiteral("First this.")}));
    show({session("a")});
    EXPECT_EQ(panel().ask(), AskRow());
    EXPECT_EQ(panel().plan(), PlanRow());
}

TEST_F(PanelModelTest, SaysWhereAnAnswerIsTyped) {
    show({running(asking(session("b")), 7)}, {request("p", "the b"), request("q", "the x")});
    EXPECT_TRUE(panel().ask().isTyped);
    EXPECT_EQ(panel().ask().hint, PanelContent::askHint(true));
    EXPECT_THAT(titles(*panel().approvals(), "isTyped"), ElementsAre("true", "false"));
    keystrokes.trusted = false;
    show({running(asking(session("b")), 7)});
    EXPECT_FALSE(panel().ask().isTyped);
    EXPECT_EQ(panel().ask().hint, PanelContent::askHint(false));
}

TEST_F(PanelModelTest, ShowsTheLogOfTheSelectedSession) {
    SessionInfo talking = session("a");
    talking.events = {
        {QStringLiteral("1.0"), LogEvent::Kind::text, QStringLiteral("Hello"), {}, {}}};
    show({talking, session("b")});
    EXPECT_EQ(panel().log()->rowCount(), 0);
    panel().toggleSelection(QStringLiteral("a"));
    queue.runPosted();
    EXPECT_EQ(panel().selectedId(), "a");
    EXPECT_THAT(titles(*panel().log(), "label"), ElementsAre("Hello"));
    panel().toggleSelection(QStringLiteral("b"));
    queue.runPosted();
    EXPECT_EQ(panel().log()->rowCount(), 0);
    panel().toggleSelection(QStringLiteral("b"));
    queue.runPosted();
    EXPECT_EQ(panel().selectedId(), "");
}

TEST_F(PanelModelTest, ShowsOtherProcesses) {
    ClaudeProcess process;
    process.pid = 4242;
    process.cwd = QStringLiteral("/home/u/scratch");
    state->applyScan({}, {process}, {});
    queue.runPosted();
    EXPECT_THAT(titles(*panel().processes(), "name"), ElementsAre("scratch"));
}

TEST_F(PanelModelTest, ReportsMeasuresOnlyWhenTheyChange) {
    int changes = 0;
    QObject::connect(state.get(), &AppState::willChange, state.get(), [&] { ++changes; });
    panel().setContentHeight(300);
    panel().setContentHeight(300);
    panel().setListContentHeight(200);
    panel().setListContentHeight(200);
    panel().setEditingPrompt(false);
    panel().setEditingPrompt(true);
    panel().setEditingPrompt(true);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(state->contentHeight(), 300);
    EXPECT_EQ(state->listContentHeight(), 200);
    EXPECT_TRUE(state->editingPrompt());
}

TEST_F(PanelModelTest, PassesActionsOn) {
    applications.running[7] = {};
    show({running(asking(session("a")), 7), session("b")}, {request("p", "the a")});
    panel().togglePin();
    EXPECT_TRUE(state->pinned());
    panel().answer(QStringLiteral("a"), 1);
    EXPECT_THAT(applications.done, ElementsAre("activate 7"));
    panel().respond(QStringLiteral("p"), 2);
    EXPECT_THAT(applications.done, ElementsAre("activate 7", "activate 7"));
    EXPECT_THAT(state->permissionRequests(), IsEmpty());
    panel().jump(QStringLiteral("a"));
    EXPECT_EQ(applications.done.size(), 3U);
    panel().sendPrompt(QStringLiteral("b"), QStringLiteral(" go on "));
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].prompt, "go on");
    EXPECT_EQ(sent[0].session.id, "b");
}

TEST_F(PanelModelTest, DismissesARequestWithoutAnsweringIt) {
    applications.running[7] = {};
    show({running(session("a"), 7)}, {request("p", "the a"), request("q", "the a")});
    panel().dismiss(QStringLiteral("p"));
    EXPECT_THAT(applications.done, IsEmpty());
    queue.runPosted();
    EXPECT_THAT(titles(*panel().approvals()), ElementsAre("q"));
}

TEST_F(PanelModelTest, PassesOverWhatIsGone) {
    show({session("a")});
    panel().toggleSelection(QStringLiteral("x"));
    panel().jump(QStringLiteral("x"));
    panel().answer(QStringLiteral("x"), 1);
    panel().respond(QStringLiteral("x"), 1);
    panel().dismiss(QStringLiteral("x"));
    panel().sendPrompt(QStringLiteral("x"), QStringLiteral("go on"));
    EXPECT_FALSE(state->selectedSessionId());
    EXPECT_THAT(applications.done, IsEmpty());
    EXPECT_THAT(sent, IsEmpty());
}

TEST_F(PanelModelTest, AsksForTheEnd) {
    int asked = 0;
    QObject::connect(&panel(), &PanelModel::quitRequested, &panel(), [&] { ++asked; });
    panel().quit();
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace sallowmere
