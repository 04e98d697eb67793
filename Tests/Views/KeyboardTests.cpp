// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <QTest>

#include <chrono>
#include <set>

namespace sallowmere {
namespace {

using namespace Samples;
using testing::SizeIs;

class Keys : public ViewTest {
protected:
    bool isHeld() { return stage.view().keyboard().isHeld(); }

    QString focused() {
        const QQuickItem* item = stage.view().activeFocusItem();
        return item ? item->objectName() : QString();
    }

    void showField() {
        SessionInfo info = detailed(false);
        stage.scan({asking(), info});
        stage.state().toggleSelection(info.id);
        stage.open();
    }

    /// It does not come at once when it is asked for.
    void delayKeyboard() {
        QObject::disconnect(&stage.view().keyboard(), &Keyboard::wanted, nullptr, nullptr);
    }

    void startTyping() {
        showField();
        hand.click(hand.find("prompt"));
        ASSERT_EQ(focused(), "prompt");
    }

    /// Tabs until the control has the focus.
    void tabTo(const char* name) {
        for (int times = 0; times < 40 && focused() != QString::fromUtf8(name); ++times) {
            hand.key(Qt::Key_Tab);
        }
        ASSERT_EQ(focused(), name);
    }
};

TEST_F(Keys, AreAskedForByAPressIntoTheField) {
    startTyping();
    EXPECT_TRUE(isHeld());
    EXPECT_TRUE(stage.state().editingPrompt());
}

TEST_F(Keys, GoIntoTheFieldFromThePressOn) {
    showField();
    hand.press(hand.find("prompt"));
    EXPECT_TRUE(isHeld());
    EXPECT_EQ(focused(), "prompt");
    EXPECT_TRUE(stage.state().editingPrompt());
    hand.release(hand.find("prompt"));
    EXPECT_EQ(focused(), "prompt");
}

TEST_F(Keys, GoToAControlThatHasTheFocusOnTheirWay) {
    delayKeyboard();
    showField();
    EXPECT_FALSE(stage.view().hasFocusedControl());
    hand.press(hand.find("prompt"));
    EXPECT_FALSE(isHeld());
    EXPECT_TRUE(stage.view().hasFocusedControl());
    hand.release(hand.find("prompt"));
    stage.view().clearFocus();
    EXPECT_FALSE(stage.view().hasFocusedControl());
}

TEST_F(Keys, GoToNoControlThatIsGone) {
    delayKeyboard();
    showField();
    hand.click(hand.find("prompt"));
    stage.state().toggleSelection("work");
    stage.settle();
    EXPECT_FALSE(stage.view().hasFocusedControl());
}

TEST_F(Keys, AreNotAskedForByAnyOtherClick) {
    SessionInfo info = detailed(false);
    stage.scan({asking(), info}, {request()});
    stage.state().toggleSelection(info.id);
    stage.open();
    for (const char* name : {"jump", "hint", "question", "title", "option"}) {
        hand.click(hand.find(name));
        EXPECT_FALSE(isHeld()) << name;
        EXPECT_FALSE(stage.state().editingPrompt()) << name;
        EXPECT_EQ(stage.view().activeFocusItem(), &root()) << name;
    }
}

TEST_F(Keys, StayWithTheFieldWhenSomethingElseIsClicked) {
    startTyping();
    hand.click(hand.find("question"));
    EXPECT_EQ(focused(), "prompt");
}

TEST_F(Keys, WanderThroughTheControls) {
    startTyping();
    std::set<QString> met;
    for (int times = 0; times < 40; ++times) {
        hand.key(Qt::Key_Tab);
        met.insert(focused());
        EXPECT_TRUE(stage.state().editingPrompt());
    }
    for (const char* name : {"prompt", "terminal", "quit", "option", "row", "jump"}) {
        EXPECT_TRUE(met.contains(name)) << name;
    }
}

TEST_F(Keys, WanderBack) {
    startTyping();
    hand.key(Qt::Key_Tab);
    EXPECT_NE(focused(), "prompt");
    hand.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focused(), "prompt");
}

TEST_F(Keys, PressWhatHasTheFocus) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        stage.keystrokes.typed.clear();
        startTyping();
        tabTo("option");
        EXPECT_EQ(stage.view().activeFocusItem()->property("visualFocus"), true);
        hand.key(key);
        stage.queue().advance(3);
        EXPECT_THAT(stage.keystrokes.typed, SizeIs(1));
        hand.key(Qt::Key_Escape);
        stage.state().toggleSelection("work");
        stage.settle();
    }
}

TEST_F(Keys, DrawARingOnePointWide) {
    startTyping();
    tabTo("option");
    auto* ground = stage.view().activeFocusItem()->property("background").value<QQuickItem*>();
    EXPECT_EQ(ground->property("border").value<QObject*>()->property("width").toInt(), 1);
    hand.key(Qt::Key_Escape);
    EXPECT_EQ(ground->property("border").value<QObject*>()->property("width").toInt(), 0);
}

TEST_F(Keys, AreLeftByEscapeAnywhere) {
    startTyping();
    hand.key(Qt::Key_Escape);
    EXPECT_EQ(stage.view().activeFocusItem(), &root());
    EXPECT_FALSE(stage.state().editingPrompt());
    hand.click(hand.find("prompt"));
    tabTo("option");
    hand.key(Qt::Key_Escape);
    EXPECT_EQ(stage.view().activeFocusItem(), &root());
    EXPECT_FALSE(stage.state().editingPrompt());
}

TEST_F(Keys, AreLeftWhenTheDesktopTakesThem) {
    startTyping();
    hand.type("half");
    stage.view().keyboard().setHeld(false);
    stage.settle();
    EXPECT_EQ(stage.view().activeFocusItem(), &root());
    EXPECT_FALSE(stage.state().editingPrompt());
    EXPECT_EQ(hand.text("prompt"), "half");
}

TEST_F(Keys, AreLeftWhenThePromptIsSent) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        startTyping();
        hand.type("go");
        hand.key(key);
        ASSERT_THAT(stage.prompts, SizeIs(1));
        EXPECT_FALSE(stage.state().editingPrompt());
        EXPECT_NE(focused(), "prompt");
        stage.prompts[0].completion(std::nullopt);
        stage.prompts.clear();
        stage.settle();
        EXPECT_NE(focused(), "prompt");
        EXPECT_FALSE(stage.state().editingPrompt());
        stage.state().toggleSelection("work");
        stage.settle();
    }
}

TEST_F(Keys, AreTakenAwayBecauseNobodyTypes) {
    // As the window does it: while it is still being told.
    const auto takeAway = [this](bool editing) {
        if (!editing) {
            stage.view().clearFocus();
            stage.view().keyboard().setHeld(false);
        }
    };
    QObject::connect(&stage.state(), &AppState::editingPromptWillChange, &stage.view(), takeAway);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        startTyping();
        hand.type("go");
        hand.key(key);
        EXPECT_EQ(stage.view().activeFocusItem(), &root());
        EXPECT_FALSE(isHeld());
        EXPECT_FALSE(stage.state().editingPrompt());
        stage.state().toggleSelection("work");
        stage.settle();
    }
}

TEST_F(Keys, AreNotHeldByAFieldThatIsGone) {
    startTyping();
    stage.state().toggleSelection("work");
    stage.settle();
    EXPECT_FALSE(hand.has("prompt"));
    EXPECT_FALSE(stage.state().editingPrompt());
    startTyping();
    SessionInfo running = detailed(true);
    stage.scan({asking(), running});
    EXPECT_FALSE(hand.has("prompt"));
    EXPECT_FALSE(stage.state().editingPrompt());
}

TEST_F(Keys, AreBackInTheFieldAfterTheMenu) {
    startTyping();
    hand.type("half");
    hand.clickRight({300, 80});
    ASSERT_TRUE(hand.has("pinItem"));
    EXPECT_TRUE(stage.state().editingPrompt());
    hand.key(Qt::Key_Escape);
    ASSERT_TRUE(hand.waitFor([this] { return !hand.has("pinItem"); }));
    EXPECT_EQ(focused(), "prompt");
    EXPECT_TRUE(stage.state().editingPrompt());
    EXPECT_EQ(hand.text("prompt"), "half");
}

TEST_F(Keys, AreNoShortcutsBecauseOfWhatAStrangerWrote) {
    startTyping();
    SessionInfo asks = asking();
    asks.ask->options = {QStringLiteral("R&Do it")};
    asks.title = QStringLiteral("&Delete");
    stage.scan({asks, detailed(false)});
    QTest::keyClick(&stage.view(), Qt::Key_D, Qt::AltModifier);
    EXPECT_THAT(stage.applications.done, testing::IsEmpty());
    EXPECT_EQ(stage.model().selectedId(), detailed(false).id);
}

TEST_F(Keys, ShowWhatTheyReach) {
    std::vector<SessionInfo> sessions{detailed(false)};
    for (int number = 0; number < 30; ++number) {
        sessions.push_back(
            titled(qPrintable(QString::number(number)), "Task", std::chrono::minutes(number + 1)));
    }
    stage.scan(sessions);
    stage.state().toggleSelection("work");
    stage.open();
    hand.click(hand.find("prompt"));
    const QRectF list = PanelHand::place(hand.find("list"));
    for (int times = 0; times < 50; ++times) {
        hand.key(Qt::Key_Tab);
        if (focused() == "row") {
            EXPECT_TRUE(list.contains(PanelHand::middle(*stage.view().activeFocusItem())));
        }
    }
    EXPECT_GT(hand.find("list").property("contentY").toDouble(), 0);
}

} // namespace
} // namespace sallowmere
