// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Sounds/SoundPlayer.h"

#include "Support/FakeDesktop.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Names and volumes.
std::vector<std::pair<std::string, float>> played(const FakeSounds& sounds) {
    std::vector<std::pair<std::string, float>> result;
    for (const FakeSounds::Played& sound : sounds.played) {
        result.emplace_back(sound.name, sound.volume);
    }
    return result;
}

class SoundPlayerTest : public testing::Test {
protected:
    void playAt(const char* time, const char* name, float volume = 0.35F) {
        now = at(time);
        player.play(name, volume);
    }

    Timestamp now{};
    FakeSounds sounds;
    SoundPlayer player{sounds, [this] { return now; }};
};

TEST_F(SoundPlayerTest, PlaysASoundAtItsVolume) {
    playAt("2025-06-02T11:00:00Z", "Glass");
    playAt("2025-06-02T11:00:00Z", "Ping", 1.0F);
    playAt("2025-06-02T11:00:00Z", "Submarine", 0.0F);
    EXPECT_THAT(played(sounds),
                ElementsAre(Pair("Glass", 0.35F), Pair("Ping", 1.0F), Pair("Submarine", 0.0F)));
}

TEST_F(SoundPlayerTest, PlaysASoundOnceWhenItIsAskedForTwiceAtOnce) {
    playAt("2025-06-02T11:00:00Z", "Glass");
    playAt("2025-06-02T11:00:00Z", "Glass", 1.0F);
    EXPECT_THAT(played(sounds), ElementsAre(Pair("Glass", 0.35F)));
}

TEST_F(SoundPlayerTest, IsSilentForTwoSeconds) {
    playAt("2025-06-02T11:00:00Z", "Glass");
    playAt("2025-06-02T11:00:01.900Z", "Glass", 0.5F);
    playAt("2025-06-02T11:00:01.999Z", "Glass", 0.6F);
    playAt("2025-06-02T11:00:02Z", "Glass", 0.7F);
    EXPECT_THAT(played(sounds), ElementsAre(Pair("Glass", 0.35F), Pair("Glass", 0.7F)));
}

TEST_F(SoundPlayerTest, CountsFromTheLastTimeASoundWasLetThrough) {
    playAt("2025-06-02T11:00:00Z", "Glass");
    playAt("2025-06-02T11:00:01.500Z", "Glass", 0.5F);
    playAt("2025-06-02T11:00:03Z", "Glass", 0.6F);
    playAt("2025-06-02T11:00:04.500Z", "Glass", 0.7F);
    playAt("2025-06-02T11:00:05Z", "Glass", 0.8F);
    EXPECT_THAT(played(sounds),
                ElementsAre(Pair("Glass", 0.35F), Pair("Glass", 0.6F), Pair("Glass", 0.8F)));
}

TEST_F(SoundPlayerTest, CountsEachNameForItself) {
    playAt("2025-06-02T11:00:00Z", "Glass");
    playAt("2025-06-02T11:00:01Z", "Ping");
    playAt("2025-06-02T11:00:02Z", "Glass");
    playAt("2025-06-02T11:00:02.500Z", "Ping", 0.5F);
    playAt("2025-06-02T11:00:03Z", "Ping");
    EXPECT_THAT(played(sounds), ElementsAre(Pair("Glass", 0.35F), Pair("Ping", 0.35F),
                                            Pair("Glass", 0.35F), Pair("Ping", 0.35F)));
}

/// A desktop that has the sounds only later.
class LateSounds : public FakeSounds {
public:
    bool areThere = false;

    void play(std::string_view name, float volume) override {
        if (areThere) {
            FakeSounds::play(name, volume);
        }
    }
};

TEST(SoundPlayer, CountsASoundThatCannotBeFoundAsPlayed) {
    Timestamp now = at("2025-06-02T11:00:00Z");
    LateSounds sounds;
    SoundPlayer player(sounds, [&] { return now; });
    player.play("Glass", 0.35F);
    sounds.areThere = true;
    now = at("2025-06-02T11:00:01.900Z");
    player.play("Glass", 0.35F);
    EXPECT_THAT(played(sounds), IsEmpty());
    now = at("2025-06-02T11:00:02Z");
    player.play("Glass", 0.35F);
    EXPECT_THAT(played(sounds), ElementsAre(Pair("Glass", 0.35F)));
}

} // namespace
} // namespace sallowmere
