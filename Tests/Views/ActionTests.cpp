// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <QTest>

#include <chrono>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Actions : public ViewTest {
protected:
    void click(const char* name, std::size_t place = 0) {
        hand.click(hand.find(QString::fromUtf8(name), place));
    }

    /// Lets what types into a terminal do so, once that has the keyboard.
    void wait() {
        stage.queue().advance(3);
        stage.settle();
    }
};

TEST_F(Actions, OfAnOptionAreItsAnswer) {
    showOpen({asking()});
    click("option", 1);
    wait();
    EXPECT_THAT(stage.keystrokes.typed, ElementsAre(2));
    EXPECT_THAT(stage.applications.done, Contains("activate 7"));
}

TEST_F(Actions, OfAnOptionWorkAtItsEdges) {
    showOpen({asking()});
    const QRectF place = PanelHand::place(hand.find("option", 2));
    QTest::mouseClick(&stage.view(), Qt::LeftButton, Qt::NoModifier,
                      place.topLeft().toPoint() + QPoint(2, 2));
    wait();
    EXPECT_THAT(stage.keystrokes.typed, ElementsAre(3));
}

TEST_F(Actions, OfManyOptionsAreTheirAnswersToo) {
    SessionInfo info = asking();
    while (info.ask->options.size() < 1'000) {
        info.ask->options.push_back("more");
    }
    showOpen({info});
    click("option", 1);
    wait();
    EXPECT_THAT(stage.keystrokes.typed, ElementsAre(2));
}

TEST_F(Actions, OfPermissionsAreTyped) {
    for (int option = 1; option <= 3; ++option) {
        showOpen({working()}, {request()});
        click(qPrintable(QStringLiteral("answer%1").arg(option)));
        wait();
        EXPECT_FALSE(hand.has("approveCard"));
    }
    EXPECT_THAT(stage.keystrokes.typed, ElementsAre(1, 2, 3));
}

TEST_F(Actions, OfDismissingTypeNothing) {
    showOpen({working()}, {request()});
    click("dismiss");
    wait();
    EXPECT_FALSE(hand.has("approveCard"));
    EXPECT_THAT(stage.keystrokes.typed, IsEmpty());
}

TEST_F(Actions, OfACompletionPlanAndButtonsJump) {
    SessionInfo done = session("done", "Done", SessionStatus::working, 2s);
    done.process = process(1, 0);
    stage.scan({done});
    done.status = SessionStatus::done;
    SessionInfo planned = planning();
    planned.process = process(2, 0);
    stage.scan({done, planned});
    stage.state().toggleSelection(done.id);
    stage.open();
    for (const char* name : {"completionCard", "planHint", "jump", "terminal"}) {
        stage.applications.done.clear();
        click(name);
        wait();
        EXPECT_THAT(stage.applications.done, Contains("activate 7")) << name;
    }
}

TEST_F(Actions, OfARowToggleItsDetails) {
    showOpen({working(), idle()});
    click("title", 1);
    EXPECT_EQ(stage.state().selectedSessionId(), "idle");
    EXPECT_TRUE(hand.has("log"));
    click("title", 1);
    EXPECT_EQ(stage.state().selectedSessionId(), std::nullopt);
    EXPECT_FALSE(hand.has("log"));
}

TEST_F(Actions, OfJumpingSelectNothing) {
    showOpen({working()});
    click("jump");
    EXPECT_EQ(stage.state().selectedSessionId(), std::nullopt);
    EXPECT_THAT(stage.applications.done, Contains("activate 7"));
}

TEST_F(Actions, SendATrimmedPrompt) {
    showDetails(detailed(false));
    click("prompt");
    hand.type("  fix the test  ");
    click("send");
    ASSERT_EQ(stage.prompts.size(), 1U);
    EXPECT_EQ(stage.prompts[0].text, "fix the test");
    EXPECT_EQ(stage.prompts[0].sessionId, "work");
    EXPECT_EQ(hand.text("prompt"), "");
    EXPECT_TRUE(hand.has("sending"));
    EXPECT_FALSE(hand.has("send"));
    EXPECT_FALSE(hand.find("prompt").isEnabled());
    stage.prompts[0].completion(std::nullopt);
    stage.settle();
    EXPECT_TRUE(hand.has("send"));
    EXPECT_TRUE(hand.find("prompt").isEnabled());
}

TEST_F(Actions, KeepABlankPrompt) {
    showDetails(detailed(false));
    EXPECT_FALSE(hand.find("send").isEnabled());
    click("prompt");
    hand.type("   ");
    hand.key(Qt::Key_Return);
    EXPECT_THAT(stage.prompts, IsEmpty());
    EXPECT_EQ(hand.text("prompt"), "   ");
}

TEST_F(Actions, OfTheFooterEndTheProgram) {
    showOpen({idle()});
    int asked = 0;
    QObject::connect(&stage.model(), &PanelModel::quitRequested, [&] { ++asked; });
    click("quit");
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace sallowmere
