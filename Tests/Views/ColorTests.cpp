// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <chrono>
#include <map>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;

const QColor blue = QColor::fromRgbF(0.36F, 0.56F, 1.0F);
const QColor green = QColor::fromRgbF(0.24F, 0.82F, 0.44F);
const QColor cyan = QColor::fromRgbF(0.35F, 0.78F, 0.95F);
const QColor orange = QColor::fromRgbF(1.0F, 0.72F, 0.30F);
const QColor purple = QColor::fromRgbF(0.72F, 0.55F, 1.0F);
const QColor red = QColor::fromRgbF(1.0F, 0.36F, 0.34F);
const QColor secondary = QColor::fromRgbF(0.62F, 0.62F, 0.62F);
const QColor tertiary = QColor::fromRgbF(0.42F, 0.42F, 0.42F);

class Colors : public ViewTest {
protected:
    QColor colorOf(const char* name, std::size_t place = 0) const {
        return hand.find(QString::fromUtf8(name), place).property("color").value<QColor>();
    }

    static std::string name(const QColor& color) { return utf8(color.name()); }

    void expectColor(const char* item, const QColor& color, std::size_t place = 0) const {
        EXPECT_EQ(name(colorOf(item, place)), name(color)) << item;
    }
};

TEST_F(Colors, OfDotsTellTheStatus) {
    const std::map<SessionStatus, QColor> expected{{SessionStatus::working, blue},
                                                   {SessionStatus::waiting, cyan},
                                                   {SessionStatus::done, green},
                                                   {SessionStatus::idle, tertiary}};
    stage.open();
    for (const auto& [status, color] : expected) {
        stage.scan({session("one", "One", status, 1s)});
        expectColor("statusDot", color);
        EXPECT_EQ(name(pixel(PanelHand::middle(hand.find("statusDot")))), name(color));
    }
}

TEST_F(Colors, OfTheBeaconSumUp) {
    stage.scan({working()});
    expectColor("beacon", blue);
    stage.scan({working(), asking()});
    stage.queue().advance(AppState::peekTime);
    stage.settle();
    expectColor("beacon", cyan);
    SessionInfo done = working();
    done.status = SessionStatus::done;
    stage.scan({done});
    stage.queue().advance(AppState::peekTime);
    stage.settle();
    expectColor("beacon", green);
    EXPECT_EQ(name(pixel(PanelHand::middle(hand.find("beacon")))), name(green));
}

TEST_F(Colors, OfFiguresTellHowMuchIsUsed) {
    showOpen({idle()});
    expectColor("percent", orange, 0);
    expectColor("percent", green, 1);
    expectColor("percent", red, 2);
    expectColor("label", Qt::white, 0);
    expectColor("label", purple, 2);
    UsageSnapshot figures = usage();
    figures.weeklyFable->weightedTokens = 1;
    stage.state().setUsage(figures);
    stage.settle();
    expectColor("percent", purple, 2);
}

TEST_F(Colors, OfTheLogTellWhoSpoke) {
    showDetails(detailed(false));
    expectColor("logDot", tertiary, 0);
    expectColor("logLabel", secondary, 0);
    expectColor("logDot", green, 1);
    expectColor("logLabel", Qt::white, 1);
}

TEST_F(Colors, OfAFailureIsRed) {
    showDetails(detailed(false));
    stage.model().sendPrompt("work", "go");
    stage.settle();
    expectColor("promptState", tertiary);
    stage.prompts.at(0).completion(QStringLiteral("it failed"));
    stage.settle();
    expectColor("promptState", red);
}

TEST_F(Colors, OfWhatIsTypedAreTheSameWhileItIsSelected) {
    showDetails(detailed(false));
    const QQuickItem& field = hand.find("prompt");
    EXPECT_EQ(field.property("selectedTextColor"), field.property("color"));
}

TEST_F(Colors, OfAnOptionUnderThePointerIsLighter) {
    showOpen({asking()});
    const QPoint beside = PanelHand::middle(hand.find("option")) + QPoint(200, 0);
    const int before = pixel(beside).lightness();
    hand.point(hand.find("option"));
    EXPECT_GT(pixel(beside).lightness(), before);
}

} // namespace
} // namespace sallowmere
