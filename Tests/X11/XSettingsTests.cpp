// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/XSettings.h"

#include "Platform/X11/MotionPreference.h"
#include "Support/Missing.h"
#include "System/EventLoop.h"
#include "X11/SettingsKeeper.h"
#include "X11/XServer.h"

#include <gmock/gmock.h>

#include <vector>

namespace sallowmere {
namespace {

constexpr const char* animations = "Gtk/EnableAnimations";

TEST(XSettingsTest, FindsAnIntegerAmongOthers) {
    const auto data = PublishedSettings()
                          .text("Net/ThemeName", "Quiet")
                          .color("X")
                          .integer(animations, 7)
                          .bytes();
    EXPECT_EQ(XSettings::integer(data, animations), 7);
}

TEST(XSettingsTest, KnowsBothOrdersOfBytes) {
    const auto data = PublishedSettings(PublishedSettings::Order::big)
                          .text("A", "four")
                          .integer(animations, -2)
                          .bytes();
    EXPECT_EQ(XSettings::integer(data, animations), -2);
}

TEST(XSettingsTest, KnowsNoNameThatIsNotThere) {
    const auto data = PublishedSettings().integer("Gtk/EnableAnimation", 1).bytes();
    EXPECT_EQ(XSettings::integer(data, animations), std::nullopt);
    EXPECT_EQ(XSettings::integer({}, animations), std::nullopt);
}

TEST(XSettingsTest, ATextIsNoInteger) {
    const auto data = PublishedSettings().text(animations, "1").bytes();
    EXPECT_EQ(XSettings::integer(data, animations), std::nullopt);
}

TEST(XSettingsTest, ReadsNothingBehindAnUnknownKind) {
    auto data = PublishedSettings().text("A", "four").integer(animations, 1).bytes();
    constexpr std::size_t kindOfTheFirst = 12;
    data[kindOfTheFirst] = 9;
    EXPECT_EQ(XSettings::integer(data, animations), std::nullopt);
}

TEST(XSettingsTest, SurvivesEveryCut) {
    const auto whole =
        PublishedSettings().text("Net/ThemeName", "Quiet").integer(animations, 1).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        // Exactly so long, so that reading on is noticed.
        const std::vector<std::uint8_t> cut(whole.begin(),
                                            whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(XSettings::integer(cut, animations), std::nullopt) << length;
    }
}

TEST(XSettingsTest, SurvivesAbsurdLengths) {
    auto data = PublishedSettings().text("A", "four").integer(animations, 1).bytes();
    for (std::size_t place = 0; place < data.size(); ++place) {
        auto damaged = data;
        damaged[place] = 0xFF;
        XSettings::integer(damaged, animations);
    }
    EXPECT_EQ(XSettings::integer(data, animations), 1);
}

class MotionPreferenceTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hasPrograms({"/usr/bin/Xvfb"})) {
            MISSING_FOR_TEST("an X server is not installed");
        }
    }

    bool wantsMotion() { return preference.isWanted(); }
    bool becomes(bool wanted) {
        return EventLoop::runUntil([&] { return preference.isWanted() == wanted; });
    }

    EventLoop loop;
    XServer server;
    X11Connection connection{server.display()};
    X11Events events{server.display()};
    MotionPreference preference{events, connection};
};

TEST_F(MotionPreferenceTest, ThingsMoveWhereNobodySaysOtherwise) {
    EXPECT_TRUE(wantsMotion());
}

TEST_F(MotionPreferenceTest, FollowsADesktopThatComesUpLater) {
    SettingsKeeper keeper(server.display());
    keeper.publish(PublishedSettings().integer(animations, 0).bytes());
    EXPECT_TRUE(becomes(false));
}

TEST_F(MotionPreferenceTest, FollowsTheUsersChoice) {
    SettingsKeeper keeper(server.display());
    keeper.publish(PublishedSettings().integer(animations, 0).bytes());
    ASSERT_TRUE(becomes(false));
    keeper.publish(PublishedSettings().integer(animations, 1).bytes());
    EXPECT_TRUE(becomes(true));
}

TEST_F(MotionPreferenceTest, HoldsFromTheStart) {
    SettingsKeeper keeper(server.display());
    keeper.publish(PublishedSettings().integer(animations, 0).bytes());
    EXPECT_FALSE(MotionPreference(events, connection).isWanted());
}

TEST_F(MotionPreferenceTest, SurvivesTheServer) {
    server.kill();
    EXPECT_TRUE(EventLoop::runUntil([this] { return !connection.isAlive(); }));
    EXPECT_TRUE(MotionPreference(events, connection).isWanted());
}

} // namespace
} // namespace sallowmere
