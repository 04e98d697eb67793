// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <QTest>

namespace sallowmere {
namespace {

using namespace Samples;

class Help : public ViewTest {
protected:
    /// The tooltip of an item, once it is there.
    QRectF tipOf(const char* name, std::size_t place = 0) {
        hand.point(hand.find(QString::fromUtf8(name), place));
        EXPECT_TRUE(hand.waitFor([this] { return hand.has("helpTip"); })) << name;
        return PanelHand::place(hand.find("helpTip"));
    }

    QString words() const { return hand.text("helpWords"); }

    void leave() {
        QTest::mouseMove(&stage.view(), {60, 30});
        EXPECT_TRUE(hand.waitFor([this] { return !hand.has("helpTip"); }));
    }
};

class Menu : public ViewTest {
protected:
    void SetUp() override { showOpen({working(), asking()}); }

    QPoint corner() const {
        const QRectF ground = PanelHand::place(hand.find("ground"));
        return ground.bottomRight().toPoint() - QPoint(14, 14);
    }

    bool isOpen() const { return hand.has("pinItem"); }
};

TEST_F(Help, SaysWhatAControlDoes) {
    showOpen({asking()}, {request()});
    EXPECT_FALSE(hand.has("helpTip"));
    tipOf("option", 1);
    EXPECT_EQ(words(), "Types 2 in the terminal");
    leave();
    tipOf("chip");
    EXPECT_EQ(utf8(words()), "claude running · pid 5120");
    leave();
    tipOf("jump");
    EXPECT_EQ(words(), "Jump to this session's terminal");
}

TEST_F(Help, IsWithinThePanelAndBesideItsControl) {
    showOpen({asking()}, {request()});
    const QRectF ground = PanelHand::place(hand.find("ground"));
    for (const char* name : {"quit", "jump", "dismiss", "option", "chip"}) {
        const QRectF tip = tipOf(name);
        EXPECT_TRUE(ground.contains(tip)) << name;
        EXPECT_FALSE(tip.intersects(PanelHand::place(hand.find(name)))) << name;
        leave();
    }
}

TEST_F(Help, GoesWithThePress) {
    showOpen({asking()});
    tipOf("option");
    QTest::mousePress(&stage.view(), Qt::LeftButton, Qt::NoModifier,
                      PanelHand::middle(hand.find("option")));
    EXPECT_TRUE(hand.waitFor([this] { return !hand.has("helpTip"); }));
    QTest::mouseRelease(&stage.view(), Qt::LeftButton, Qt::NoModifier, {60, 30});
}

TEST_F(Help, GoesWithItsControl) {
    showOpen({asking()});
    tipOf("option");
    stage.scan({idle()});
    EXPECT_TRUE(hand.waitFor([this] { return !hand.has("helpTip"); }));
}

TEST_F(Menu, PinsAndUnpins) {
    hand.clickRight({300, 80});
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(hand.text("pinItem"), "Pin open");
    EXPECT_EQ(hand.text("quitItem"), "Quit Sallowmere");
    hand.click(hand.find("pinItem"));
    EXPECT_TRUE(stage.state().pinned());
    EXPECT_TRUE(hand.waitFor([this] { return !isOpen(); }));
    EXPECT_TRUE(hand.has("pin"));
    hand.clickRight({300, 80});
    EXPECT_EQ(hand.text("pinItem"), "Unpin");
    hand.click(hand.find("pinItem"));
    EXPECT_FALSE(stage.state().pinned());
}

TEST_F(Menu, EndsTheProgram) {
    int asked = 0;
    QObject::connect(&stage.model(), &PanelModel::quitRequested, [&] { ++asked; });
    hand.clickRight({300, 80});
    hand.click(hand.find("quitItem"));
    EXPECT_EQ(asked, 1);
}

TEST_F(Menu, OpensOnEverything) {
    stage.state().toggleSelection("work");
    SessionInfo planned = planning();
    stage.scan({detailed(false), planned});
    for (const char* name : {"header", "footer", "plan", "prompt", "title", "terminal"}) {
        hand.clickRight(PanelHand::middle(hand.find(name)));
        EXPECT_TRUE(isOpen()) << name;
        QTest::mouseClick(&stage.view(), Qt::LeftButton, Qt::NoModifier, {30, 4});
        ASSERT_TRUE(hand.waitFor([this] { return !isOpen(); })) << name;
    }
}

TEST_F(Menu, IsWithinThePanelAlsoNearItsCorner) {
    hand.clickRight(corner());
    ASSERT_TRUE(isOpen());
    const QRectF ground = PanelHand::place(hand.find("ground"));
    EXPECT_TRUE(ground.contains(PanelHand::place(hand.find("menuGround"))));
}

TEST_F(Menu, ClosesOnEscapeAndOnAClickElsewhere) {
    hand.clickRight({300, 80});
    hand.key(Qt::Key_Escape);
    EXPECT_TRUE(hand.waitFor([this] { return !isOpen(); }));
    hand.clickRight({300, 80});
    ASSERT_TRUE(isOpen());
    QTest::mouseClick(&stage.view(), Qt::LeftButton, Qt::NoModifier, {30, 4});
    EXPECT_TRUE(hand.waitFor([this] { return !isOpen(); }));
    EXPECT_TRUE(stage.applications.done.empty());
}

TEST_F(Menu, ClosesWithThePanel) {
    hand.clickRight({300, 80});
    ASSERT_TRUE(isOpen());
    stage.state().hoverChanged(false);
    stage.queue().advance(AppState::leaveTime);
    stage.settle();
    EXPECT_FALSE(stage.model().expanded());
    EXPECT_TRUE(hand.waitFor([this] { return !isOpen(); }));
    stage.open();
    EXPECT_FALSE(isOpen());
}

TEST_F(Menu, TakesNoKeyboard) {
    hand.clickRight({300, 80});
    EXPECT_FALSE(stage.view().keyboard().isHeld());
    EXPECT_FALSE(stage.state().editingPrompt());
}

} // namespace
} // namespace sallowmere
