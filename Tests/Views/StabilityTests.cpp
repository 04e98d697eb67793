// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <QPointer>

#include <chrono>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;

/// What the user does there is not lost because the model is refreshed.
class Stability : public ViewTest {
protected:
    /// A scan like the last one but for its figures.
    void refresh() {
        SessionInfo other = working();
        other.process->cpuPercent = ++cpu_;
        other.activity = QStringLiteral("Writing file %1").arg(cpu_);
        std::vector<SessionInfo> sessions = kept;
        sessions.push_back(other);
        stage.scan(std::move(sessions), requests);
    }

    /// `edited` with a prompt half typed, its cursor within and a word selected.
    void typeHalf(const SessionInfo& edited) {
        kept = {edited};
        refresh();
        stage.state().toggleSelection(edited.id);
        stage.open();
        hand.click(hand.find("prompt"));
        hand.type("half a prompt");
        QMetaObject::invokeMethod(&hand.find("prompt"), "select", Q_ARG(int, 2), Q_ARG(int, 6));
    }

    void expectHalfTyped() {
        const QQuickItem& field = hand.find("prompt");
        EXPECT_EQ(field.property("text"), "half a prompt");
        EXPECT_EQ(field.property("selectionStart"), 2);
        EXPECT_EQ(field.property("selectionEnd"), 6);
        EXPECT_EQ(field.property("cursorPosition"), 6);
        EXPECT_TRUE(field.hasActiveFocus());
        EXPECT_TRUE(stage.state().editingPrompt());
    }

    static SessionInfo prompted() {
        SessionInfo info = detailed(false);
        info.id = info.sessionId = "prompted";
        return info;
    }

    std::vector<SessionInfo> kept;
    std::vector<PermissionRequest> requests;

private:
    int cpu_ = 10;
};

TEST_F(Stability, OfAHalfTypedPrompt) {
    typeHalf(prompted());
    const QPointer<QQuickItem> field = &hand.find("prompt");
    for (int time = 0; time < 3; ++time) {
        refresh();
        ASSERT_EQ(&hand.find("prompt"), field);
        expectHalfTyped();
    }
}

TEST_F(Stability, OfAHalfTypedPromptWhoseRowMoves) {
    typeHalf(prompted());
    const QPointer<QQuickItem> field = &hand.find("prompt");
    const double before = PanelHand::place(*field).top();
    kept[0].lastActivityAt = now() - 1h;
    refresh();
    EXPECT_NE(PanelHand::place(*field).top(), before);
    expectHalfTyped();
    kept[0].lastActivityAt = now() + 1h;
    refresh();
    ASSERT_EQ(&hand.find("prompt"), field);
    expectHalfTyped();
}

TEST_F(Stability, OfAHalfTypedPromptBelowANewCard) {
    typeHalf(prompted());
    requests = {request()};
    kept.push_back(asking());
    refresh();
    EXPECT_TRUE(hand.has("approveCard"));
    EXPECT_TRUE(hand.has("askCard"));
    expectHalfTyped();
}

TEST_F(Stability, OfOptionsUnderThePointerAndTheKeyboard) {
    kept = {asking()};
    refresh();
    stage.open();
    const QPointer<QQuickItem> option = &hand.find("option", 1);
    hand.point(*option);
    ASSERT_TRUE(hand.waitFor([&] { return option->property("hovered").toBool(); }));
    option->forceActiveFocus(Qt::TabFocusReason);
    refresh();
    ASSERT_EQ(&hand.find("option", 1), option);
    EXPECT_EQ(option->property("hovered"), true);
    EXPECT_TRUE(option->hasActiveFocus());
}

TEST_F(Stability, OfTheScrolledList) {
    for (int number = 0; number < 30; ++number) {
        kept.push_back(titled(qPrintable(QString::number(number)), "Task", number * 1min));
    }
    refresh();
    stage.open();
    QQuickItem& list = hand.find("list");
    list.setProperty("contentY", 300);
    refresh();
    EXPECT_EQ(list.property("contentY"), 300);
}

TEST_F(Stability, OfAListThatShrinksIsAValidPlace) {
    for (int number = 0; number < 30; ++number) {
        kept.push_back(titled(qPrintable(QString::number(number)), "Task", number * 1min));
    }
    refresh();
    stage.open();
    QQuickItem& list = hand.find("list");
    list.setProperty("contentY", 300);
    kept.resize(18);
    refresh();
    EXPECT_LE(list.property("contentY").toDouble() + list.height(),
              list.property("contentHeight").toDouble());
    EXPECT_GT(list.property("contentY").toDouble(), 0);
    kept.resize(2);
    refresh();
    EXPECT_EQ(list.property("contentY"), 0);
}

TEST_F(Stability, OfThePlanScrolledAndSelected) {
    SessionInfo planned = planning();
    planned.plan = QStringLiteral("A line of the plan.\n\n").repeated(80);
    kept = {planned};
    refresh();
    stage.open();
    QQuickItem& scroll = hand.find("planScroll");
    scroll.setProperty("contentY", 120);
    QMetaObject::invokeMethod(&hand.find("plan"), "select", Q_ARG(int, 2), Q_ARG(int, 6));
    refresh();
    EXPECT_EQ(scroll.property("contentY"), 120);
    EXPECT_EQ(hand.find("plan").property("selectedText"), "line");
}

TEST_F(Stability, OfTheOpenMenu) {
    kept = {idle()};
    refresh();
    stage.open();
    hand.clickRight({300, 80});
    ASSERT_TRUE(hand.has("pinItem"));
    const QPointF place = PanelHand::place(hand.find("pinItem")).topLeft();
    refresh();
    ASSERT_TRUE(hand.has("pinItem"));
    EXPECT_EQ(PanelHand::place(hand.find("pinItem")).topLeft(), place);
}

TEST_F(Stability, OfATooltip) {
    kept = {asking()};
    refresh();
    stage.open();
    hand.point(hand.find("option"));
    ASSERT_TRUE(hand.waitFor([this] { return hand.has("helpTip"); }));
    refresh();
    EXPECT_TRUE(hand.has("helpTip"));
    EXPECT_EQ(hand.find("helpTip").property("isDue"), true);
}

TEST_F(Stability, OfWhatTurnsAndBreathes) {
    kept = {idle()};
    refresh();
    stage.view().setMotionWanted(true);
    QQuickItem& spinner = hand.find("spinner");
    QQuickItem& beacon = hand.find("beacon");
    ASSERT_TRUE(hand.waitFor([&] { return spinner.property("step").toInt() > 2; }));
    const int step = spinner.property("step").toInt();
    const double opacity = beacon.opacity();
    EXPECT_LT(opacity, 1);
    // No time passes for what is drawn meanwhile.
    SessionInfo other = working();
    other.process->cpuPercent = 99;
    stage.state().applyScan({idle(), other}, {}, {});
    stage.queue().runPosted();
    EXPECT_EQ(&hand.find("spinner"), &spinner);
    EXPECT_EQ(spinner.property("step"), step);
    EXPECT_EQ(beacon.opacity(), opacity);
}

} // namespace
} // namespace sallowmere
