// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <chrono>
#include <cmath>
#include <set>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;

class Moving : public ViewTest {
protected:
    Moving() { stage.view().setMotionWanted(true); }

    bool isGliding(const char* name) const {
        for (const QQuickItem* row : hand.all(QString::fromUtf8(name))) {
            if (row->property("isGliding").toBool()) {
                return true;
            }
        }
        return false;
    }

    /// Where each row is drawn.
    std::vector<double> tops() const {
        std::vector<double> places;
        for (const QQuickItem* row : hand.all("session")) {
            places.push_back(PanelHand::place(*row).top());
        }
        return places;
    }

    /// What takes the model over now, without time for anything to end.
    void scanAtOnce(std::vector<SessionInfo> sessions) {
        stage.state().applyScan(std::move(sessions), {}, {});
        stage.queue().runPosted();
        stage.view().grabWindow();
    }

    static SessionInfo latest(SessionInfo info) {
        info.lastActivityAt = now() + 1h;
        return info;
    }
};

using Resting = ViewTest;

TEST_F(Moving, TurnsAndBreathesWhileASessionWorks) {
    stage.scan({working()});
    std::set<double> angles;
    std::set<double> opacities;
    EXPECT_TRUE(hand.waitFor([&] {
        angles.insert(hand.find("spinner").rotation());
        opacities.insert(hand.find("beacon").opacity());
        return angles.size() > 5 && opacities.size() > 5;
    }));
    EXPECT_GE(*opacities.begin(), 0.25);
    stage.open();
    EXPECT_TRUE(hand.waitFor([&] { return hand.find("statusDot").opacity() < 0.9; }));
}

TEST_F(Moving, BreathesDownToItsLowest) {
    stage.scan({working()});
    EXPECT_TRUE(hand.waitFor([&] { return hand.find("beacon").opacity() <= 0.251; }));
    EXPECT_TRUE(hand.waitFor([&] { return hand.find("beacon").opacity() >= 0.99; }));
}

TEST_F(Moving, HoldsTheBeaconOnceSomethingIsFinished) {
    stage.scan({working()});
    ASSERT_TRUE(hand.waitFor([&] { return hand.find("beacon").opacity() < 0.9; }));
    SessionInfo done = working();
    done.status = SessionStatus::done;
    stage.scan({done});
    stage.queue().advance(AppState::peekTime);
    stage.settle();
    EXPECT_EQ(hand.find("beacon").opacity(), 1);
}

TEST_F(Moving, DrawsNothingAnewWhileNothingWorks) {
    stage.scan({idle()});
    for (const QObject* item : root().findChildren<QObject*>()) {
        EXPECT_NE(item->property("running"), true) << item->metaObject()->className();
    }
}

TEST_F(Moving, IsAtItsPlaceWhenItOpens) {
    stage.scan({asking(), working(), idle()});
    stage.open();
    EXPECT_FALSE(isGliding("session"));
    for (std::size_t row = 1; row < 3; ++row) {
        EXPECT_EQ(tops()[row], PanelHand::place(hand.find("session", row - 1)).bottom());
    }
}

TEST_F(Moving, IsAtItsPlaceWhenHeightsChange) {
    showOpen({working(), idle(), titled("more", "More", 2h)});
    SessionInfo taller = working();
    taller.todo = TodoProgress{1, 2};
    scanAtOnce({taller, idle(), titled("more", "More", 2h)});
    EXPECT_FALSE(isGliding("session"));
    stage.model().toggleSelection("idle");
    stage.queue().runPosted();
    stage.view().grabWindow();
    EXPECT_FALSE(isGliding("session"));
    for (std::size_t row = 1; row < 3; ++row) {
        EXPECT_EQ(tops()[row], PanelHand::place(hand.find("session", row - 1)).bottom());
    }
}

TEST_F(Moving, GlidesWhenTheOrderChanges) {
    showOpen({working(), idle()});
    const double before = tops()[1];
    scanAtOnce({working(), latest(idle())});
    EXPECT_TRUE(isGliding("session"));
    // The last one comes from where it was.
    bool isThere = false;
    for (const double top : tops()) {
        isThere = isThere || std::abs(top - before) < 40;
    }
    EXPECT_TRUE(isThere);
    EXPECT_TRUE(hand.waitFor([&] { return !isGliding("session"); }));
    EXPECT_EQ(hand.text("title", 0), idle().title);
    EXPECT_EQ(tops()[1], PanelHand::place(hand.find("session", 0)).bottom());
}

TEST_F(Moving, GlidesBelowANewCard) {
    showOpen({working(), idle()});
    SessionInfo asks = working();
    asks.ask = asking().ask;
    scanAtOnce({asks, idle()});
    EXPECT_TRUE(isGliding("session"));
    EXPECT_TRUE(hand.waitFor([&] { return !isGliding("session"); }));
    EXPECT_GE(tops()[0], PanelHand::place(hand.find("askCard")).bottom());
}

TEST_F(Resting, StandsStillWhereReducedMotionIsAskedFor) {
    stage.scan({working(), idle()});
    for (const QObject* item : root().findChildren<QObject*>()) {
        EXPECT_NE(item->property("running"), true) << item->metaObject()->className();
    }
    EXPECT_EQ(hand.find("beacon").opacity(), 1);
    stage.open();
    SessionInfo moved = idle();
    moved.lastActivityAt = now() + 1h;
    stage.state().applyScan({working(), moved}, {}, {});
    stage.queue().runPosted();
    stage.view().grabWindow();
    EXPECT_EQ(PanelHand::place(hand.find("session", 1)).top(),
              PanelHand::place(hand.find("session", 0)).bottom());
}

} // namespace
} // namespace sallowmere
