// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <chrono>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;

class Layout : public ViewTest {
protected:
    QRectF placeOf(const char* name, std::size_t place = 0) const {
        return PanelHand::place(hand.find(QString::fromUtf8(name), place));
    }

    /// Each begins where the one above it ends, or further below.
    void expectApart(const char* name) {
        const auto rows = hand.all(QString::fromUtf8(name));
        for (std::size_t row = 1; row < rows.size(); ++row) {
            EXPECT_GE(PanelHand::place(*rows[row]).top(),
                      PanelHand::place(*rows[row - 1]).bottom());
        }
    }
};

class NotchedLayout : public NotchedViewTest {};

TEST_F(Layout, OfTheBarFillsTheWindow) {
    stage.scan({working()});
    EXPECT_EQ(placeOf("ground"), QRectF(0, 0, 240, 30));
    EXPECT_EQ(root().findChild<QQuickItem*>("ground")->property("lowerRadius"), 10);
    EXPECT_FALSE(hand.has("shadow"));
}

TEST_F(Layout, OfTheBarHasItsContentAtTheEndsOfTheWings) {
    stage.scan({working()});
    EXPECT_EQ(placeOf("spinner").left(), 14);
    EXPECT_EQ(placeOf("beacon").right(), 240 - 14);
    EXPECT_EQ(placeOf("beacon").size(), QSizeF(7, 7));
    EXPECT_NEAR(placeOf("spinner").center().y(), 15, 0.5);
    EXPECT_NEAR(placeOf("beacon").center().y(), 15, 0.5);
    EXPECT_NEAR(placeOf("fiveHourPercent").center().y(), 15, 0.5);
    EXPECT_LE(placeOf("fiveHourPercent").right(), placeOf("beacon").left() - 4);
}

TEST_F(Layout, OfTheBarHasASymbolInsteadOfTheSpinnerWhileNothingWorks) {
    stage.scan({idle()});
    EXPECT_FALSE(hand.has("spinner"));
    EXPECT_FALSE(hand.has("beacon"));
    EXPECT_EQ(placeOf("restingSymbol").left(), 14);
    EXPECT_EQ(placeOf("fiveHourPercent").right(), 240 - 14);
}

TEST_F(Layout, OfThePanelLeavesRoomForTheShadow) {
    showOpen({working()});
    const QSizeF window = stage.view().size();
    EXPECT_EQ(window.width(), 664);
    EXPECT_EQ(placeOf("ground"), QRectF(22, 0, 620, window.height() - 28));
    EXPECT_EQ(hand.find("ground").property("lowerRadius"), 22);
    EXPECT_EQ(placeOf("shadow"), QRectF(0, 0, 664, window.height()));
}

TEST_F(Layout, OfThePanelIsHeaderListAndFooter) {
    showOpen({working(), idle()});
    EXPECT_GE(placeOf("header").top(), 8);
    EXPECT_GE(placeOf("list").top(), placeOf("header").bottom());
    EXPECT_GE(placeOf("footer").top(), placeOf("list").bottom());
    EXPECT_EQ(placeOf("footer").bottom(), placeOf("ground").bottom() - 12);
    EXPECT_EQ(placeOf("header").left(), placeOf("list").left());
}

TEST_F(Layout, TellsItsNaturalHeights) {
    showOpen({working(), idle()});
    EXPECT_EQ(stage.state().contentHeight(), placeOf("ground").height());
    EXPECT_EQ(stage.state().listContentHeight(), placeOf("list").height());
    const double before = stage.state().contentHeight();
    stage.scan({working(), idle(), titled("more", "More", 2h)});
    EXPECT_GT(stage.state().contentHeight(), before);
}

TEST_F(NotchedLayout, BeginsBelowTheNotch) {
    showOpen({working()});
    EXPECT_GE(PanelHand::place(hand.find("header")).top(), 32);
    stage.view().setMetrics(NotchMetrics{});
    stage.settle();
    EXPECT_LT(PanelHand::place(hand.find("header")).top(), 32);
}

TEST_F(NotchedLayout, LeavesTheMiddleOfTheBarFree) {
    stage.scan({working()});
    const double wing = stage.state().settings().wingWidth;
    const double width = stage.view().width();
    EXPECT_EQ(width, 185 + 2 * wing);
    EXPECT_LE(PanelHand::place(hand.find("spinner")).right(), wing);
    EXPECT_GE(PanelHand::place(hand.find("fiveHourPercent")).left(), width - wing);
}

TEST_F(Layout, PutsCardsAboveSessionsAndOtherProcessesBelow) {
    SessionInfo planned = planning();
    stage.scan({titled("done", "Done", 2s)});
    SessionInfo done = session("done", "Done", SessionStatus::working, 2s);
    stage.scan({done});
    done.status = SessionStatus::done;
    showOpen({asking(), planned, done}, {request()}, {orphan("/home/u/scratch")});
    double below = 0;
    for (const char* name : {"completionCard", "approveCard", "askCard", "planCard", "session",
                             "processesHeading", "process"}) {
        EXPECT_GE(placeOf(name).top(), below) << name;
        below = placeOf(name).bottom();
    }
    expectApart("session");
}

TEST_F(Layout, HasOneColumnForTheElementsOfAllRows) {
    SessionInfo busy = working();
    busy.process->cpuPercent = 100;
    SessionInfo other = detailed(true);
    other.id = other.sessionId = "other";
    other.modelBadge = "Opus";
    other.process->cpuPercent = 3;
    showOpen({busy, other});
    ASSERT_EQ(hand.all("chip").size(), 2U);
    for (const char* name : {"chip", "badge", "jump"}) {
        EXPECT_EQ(placeOf(name, 0).right(), placeOf(name, 1).right()) << name;
    }
}

TEST_F(Layout, MovesNothingWhenFiguresChange) {
    showOpen({working()});
    const QRectF chip = placeOf("chip");
    const QRectF weekly = placeOf("weekly");
    for (const double cpu : {4.0, 11.0, 48.0}) {
        SessionInfo changed = working();
        changed.process->cpuPercent = cpu;
        UsageSnapshot figures = usage();
        figures.weekly.weightedTokens = 3.5e6 * (cpu + 10);
        stage.scan({changed});
        stage.state().setUsage(figures);
        stage.settle();
        EXPECT_EQ(hand.text("cpu"), QString::number(cpu) + '%');
        EXPECT_EQ(placeOf("chip"), chip);
        EXPECT_EQ(placeOf("weekly"), weekly);
    }
}

TEST_F(Layout, MakesWholeOptionsTheTarget) {
    SessionInfo info = asking();
    info.ask->options = {"Short", QStringLiteral("two lines ").repeated(12),
                         QStringLiteral("very many lines ").repeated(90)};
    showOpen({info});
    EXPECT_EQ(placeOf("option", 0).height(), 32);
    EXPECT_EQ(hand.find("optionLabel", 1).property("truncated"), false);
    EXPECT_EQ(hand.find("optionLabel", 1).property("lineCount"), 2);
    EXPECT_EQ(hand.find("optionLabel", 2).property("truncated"), true);
    EXPECT_EQ(hand.find("optionLabel", 2).property("lineCount"), 3);
    expectApart("option");
    for (std::size_t place = 0; place < 3; ++place) {
        EXPECT_GT(placeOf("option", place).height(), placeOf("optionLabel", place).height() + 8);
    }
}

TEST_F(Layout, ScrollsFortyOptionsWithTheList) {
    SessionInfo info = asking();
    info.ask->options.clear();
    for (int number = 1; number <= 40; ++number) {
        info.ask->options.push_back(QStringLiteral("Option %1").arg(number));
    }
    showOpen({info});
    EXPECT_EQ(hand.all("option").size(), 40U);
    EXPECT_EQ(stage.view().height(), 560 + 28);
    const double top = placeOf("option").top();
    hand.wheel(hand.find("list"), 240);
    EXPECT_TRUE(hand.waitFor([&] { return placeOf("option").top() < top; }));
}

TEST_F(Layout, MakesOfTenThousandOptionsWhatIsInSight) {
    SessionInfo info = asking();
    info.ask->options.clear();
    for (int number = 1; number <= 10'000; ++number) {
        info.ask->options.push_back(QStringLiteral("Option %1").arg(number));
    }
    showOpen({info});
    EXPECT_EQ(hand.text("optionLabel"), "Option 1");
    EXPECT_LT(hand.all("option").size(), 100U);
    hand.wheel(hand.find("manyOptions"), 4'000);
    EXPECT_TRUE(hand.waitFor(
        [&] { return hand.has("optionLabel") && hand.text("optionLabel") != "Option 1"; }));
    EXPECT_EQ("Option " + hand.text("number"), hand.text("optionLabel"));
}

TEST_F(Layout, OfDetailsIsBelowTheirRow) {
    showDetails(detailed(false));
    EXPECT_GE(placeOf("log").top(), placeOf("row").bottom());
    EXPECT_GE(placeOf("prompt").top(), placeOf("log").bottom());
    EXPECT_EQ(placeOf("session", 1).top(), placeOf("session", 0).bottom());
    EXPECT_EQ(placeOf("logDot").size(), QSizeF(5, 5));
    EXPECT_EQ(placeOf("logDot").left(), placeOf("log").left() + 4.5);
}

TEST_F(Layout, KeepsTheTerminalButtonBesideTheField) {
    showDetails(detailed(false));
    EXPECT_EQ(placeOf("terminal").center().y(), placeOf("prompt").center().y());
    stage.model().sendPrompt("work", "go");
    stage.settle();
    EXPECT_TRUE(hand.has("promptState"));
    EXPECT_EQ(placeOf("terminal").center().y(), placeOf("prompt").center().y());
    EXPECT_LT(placeOf("prompt").right(), placeOf("terminal").left());
}

TEST_F(Layout, HasDotsOfTheirSizes) {
    showOpen({working()}, {}, {orphan("/home/u/scratch")});
    EXPECT_EQ(placeOf("statusDot").size(), QSizeF(8, 8));
    EXPECT_EQ(hand.find("badge").property("radius"), 6);
}

} // namespace
} // namespace sallowmere
