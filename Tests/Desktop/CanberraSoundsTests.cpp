// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/CanberraSounds.h"

#include "Desktop/Daemon.h"
#include "Desktop/SilentSocket.h"
#include "Desktop/SoundServer.h"
#include "Sallowmere/Sounds/SoundPlayer.h"
#include "Support/Missing.h"
#include "Support/Times.h"
#include "System/EnvironmentVariable.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>

#include <unistd.h>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::Gt;
using testing::HasSubstr;
using testing::Lt;
using testing::Not;

namespace fs = std::filesystem;

const std::string theme = "/usr/share/sounds/freedesktop";

const std::map<std::string, std::string> files{
    {"Glass", theme + "/stereo/complete.oga"},
    {"Ping", theme + "/stereo/message-new-instant.oga"},
    {"Submarine", theme + "/stereo/dialog-warning.oga"},
};

/// Likeness.
constexpr double same = 0.9;
constexpr double different = 0.5;

/// In decibels.
double louder(const Samples& sound, const Samples& other) {
    return 10 * std::log10(energy(sound) / energy(other));
}

std::ptrdiff_t threads() {
    const fs::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

/// A desktop with a sound server that the test starts, and the sound theme of the system.
class CanberraSoundsTest : public testing::Test {
protected:
    void SetUp() override {
        for (const std::string& needed :
             {std::string("/usr/bin/pulseaudio"), std::string("/usr/bin/parec"),
              std::string("/usr/bin/paplay"), theme + "/index.theme"}) {
            if (access(needed.c_str(), R_OK) != 0) {
                MISSING_FOR_TEST(needed + " is not there");
            }
        }
        home.makeDirectory("run");
    }

    void startServer() {
        recording.reset();
        server.reset();
        server.emplace(home);
        recording.emplace(home);
    }

    /// What is heard when that is played.
    Samples heard(const std::string& name, float volume = 1) {
        sounds->play(name, volume);
        return recording->next();
    }

    /// What is heard when another program plays the sound's file.
    Samples heardFile(const std::string& name) {
        const auto player = startDaemon(home, {"/usr/bin/paplay", files.at(name)},
                                        {"PULSE_SERVER=" + SoundServer::address(home)});
        return recording->next();
    }

    TemporaryHome home;
    EnvironmentVariable homeDirectory{"HOME", home.path()};
    EnvironmentVariable cache{"XDG_CACHE_HOME", std::nullopt};
    EnvironmentVariable runtime{"XDG_RUNTIME_DIR", home / "run"};
    EnvironmentVariable bus{"DBUS_SESSION_BUS_ADDRESS", std::nullopt};
    EnvironmentVariable display{"DISPLAY", std::nullopt};
    EnvironmentVariable serverAddress{"PULSE_SERVER", SoundServer::address(home)};
    std::optional<SoundServer> server;
    std::optional<Recording> recording;
    std::optional<CanberraSounds> sounds{std::in_place};
};

TEST_F(CanberraSoundsTest, AreThreeSoundsOfTheTheme) {
    startServer();
    std::map<std::string, Samples> played;
    for (const auto& [name, file] : files) {
        played[name] = heard(name);
        EXPECT_THAT(likeness(played[name], heardFile(name)), Gt(same)) << name;
    }
    EXPECT_THAT(likeness(played["Glass"], played["Ping"]), Lt(different));
    EXPECT_THAT(likeness(played["Ping"], played["Submarine"]), Lt(different));
    EXPECT_THAT(likeness(played["Submarine"], played["Glass"]), Lt(different));
}

TEST_F(CanberraSoundsTest, AreAsLoudAsAsked) {
    startServer();
    const EnvironmentVariable place("LOCPATH", SALLOWMERE_LOCALES);
    // Where a decimal point is no such thing.
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ASSERT_NE(setlocale(LC_ALL, locale), nullptr);
        const Samples full = heard("Ping", 1);
        EXPECT_THAT(louder(heard("Ping", 0.35F), full), AllOf(Gt(-10.5), Lt(-7.5))) << locale;
    }
    // Lest its thread ask for the locale while that changes.
    sounds.reset();
    setlocale(LC_ALL, "C");
}

TEST_F(CanberraSoundsTest, AreNeverLouderThanTheyAre) {
    startServer();
    const Samples full = heard("Ping", 1);
    EXPECT_THAT(louder(heard("Ping", 4), full), AllOf(Gt(-1.5), Lt(1.5)));
}

TEST_F(CanberraSoundsTest, AreSilentWithoutAVolume) {
    startServer();
    const Samples other = heard("Submarine");
    for (const float volume : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        sounds->play("Glass", volume);
    }
    EXPECT_THAT(likeness(heard("Submarine"), other), Gt(same));
}

TEST_F(CanberraSoundsTest, AreSilentUnderOtherNames) {
    startServer();
    const Samples other = heard("Submarine");
    for (const char* name : {"Basso", "glass", "complete", "Glas", "Glass ", ""}) {
        sounds->play(name, 1);
    }
    EXPECT_THAT(likeness(heard("Submarine"), other), Gt(same));
}

TEST_F(CanberraSoundsTest, AreNotRepeatedByThePlayerWithinTwoSeconds) {
    startServer();
    Timestamp now = at("2025-06-02T11:00:00Z");
    SoundPlayer player(*sounds, [&] { return now; });
    player.play("Glass", 1);
    const Samples glass = recording->next();
    player.play("Submarine", 1);
    const Samples submarine = recording->next();

    now = at("2025-06-02T11:00:01.900Z");
    player.play("Glass", 1);
    EXPECT_THAT(likeness(heard("Submarine"), submarine), Gt(same));

    now = at("2025-06-02T11:00:02Z");
    player.play("Glass", 1);
    EXPECT_THAT(likeness(recording->next(), glass), Gt(same));
}

TEST_F(CanberraSoundsTest, TellTheServerWhoPlaysThemAndOnlyThen) {
    startServer();
    heardFile("Ping");
    EXPECT_THAT(server->control({"list", "clients"}), Not(HasSubstr("Sallowmere")));
    heard("Ping");
    EXPECT_THAT(server->control({"list", "clients"}),
                HasSubstr(R"(application.name = "Sallowmere")"));
}

TEST_F(CanberraSoundsTest, AreHeardWhenTheServerStartsLater) {
    sounds->play("Glass", 1);
    startServer();
    EXPECT_THAT(likeness(heard("Ping"), heardFile("Ping")), Gt(same));
}

TEST_F(CanberraSoundsTest, AreHeardWhenTheServerWasStartedAgain) {
    startServer();
    const Samples before = heard("Ping");
    startServer();
    EXPECT_THAT(likeness(heard("Ping"), before), Gt(same));
}

TEST_F(CanberraSoundsTest, MayEndWhileOneIsHeard) {
    startServer();
    sounds->play("Glass", 1);
    EXPECT_TRUE(comesTrue([this] { return recording->isHeard(); }));
    sounds.reset();
}

TEST_F(CanberraSoundsTest, AreSilentWithoutAServerAndComplainOfNothing) {
    SilentSocket socket(home / "run/silent");
    const EnvironmentVariable address("PULSE_SERVER",
                                      "unix:" + home / "run/none" + " unix:" + home / "run/silent");
    testing::internal::CaptureStderr();
    for (const auto& [name, file] : files) {
        sounds->play(name, 1);
        EXPECT_TRUE(socket.accept());
        socket.hangUp();
    }
    sounds.reset();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(CanberraSoundsTest, DoNotKeepTheProgramFromEndingWhenTheServerDoesNotAnswer) {
    SilentSocket socket(home / "run/sound");
    const std::ptrdiff_t withTheirQueue = threads();
    sounds->play("Glass", 1);
    ASSERT_TRUE(socket.accept());
    sounds.reset();
    EXPECT_TRUE(socket.isConnected());
    socket.hangUp();
    EXPECT_TRUE(comesTrue([=] { return threads() == withTheirQueue - 1; }));
}

TEST_F(CanberraSoundsTest, WaitOnlyOnceEachForAServerThatDoesNotAnswer) {
    startServer();
    const Samples once = heard("Ping", 0.2F);
    server->stop();
    sounds->play("Glass", 0.001F);
    for (int i = 0; i < 10; ++i) {
        sounds->play("Ping", 0.2F);
    }
    server->goOn();
    EXPECT_THAT(louder(recording->next(), once), AllOf(Gt(-1.5), Lt(1.5)));
}

/// Other sounds than the system's, which libcanberra remembers where it found.
class OtherTheme : public CanberraSoundsTest {
protected:
    EnvironmentVariable otherCache{"XDG_CACHE_HOME", home / "other-cache"};
    EnvironmentVariable data{"XDG_DATA_DIRS", home / "data"};
};

TEST_F(OtherTheme, MayLackSomeOfThem) {
    startServer();
    home.makeDirectory("data/sounds/freedesktop/stereo");
    fs::copy(theme + "/index.theme", home / "data/sounds/freedesktop");
    fs::copy(files.at("Submarine"), home / "data/sounds/freedesktop/stereo");
    sounds->play("Glass", 1);
    sounds->play("Ping", 1);
    EXPECT_THAT(likeness(heard("Submarine"), heardFile("Submarine")), Gt(same));
}

TEST_F(OtherTheme, MayNotBeThereAtAll) {
    startServer();
    home.makeDirectory("data/sounds");
    testing::internal::CaptureStderr();
    sounds->play("Glass", 1);
    sounds->play("Ping", 1);
    // What belongs to no theme shows that they were looked for.
    fs::copy(files.at("Submarine"), home / "data/sounds");
    EXPECT_THAT(likeness(heard("Submarine"), heardFile("Submarine")), Gt(same));
    sounds.reset();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SoundTheme, HasThreeDifferentFiles) {
    if (!fs::exists(theme)) {
        MISSING_FOR_TEST("the freedesktop sound theme is not installed");
    }
    for (const auto& [name, file] : files) {
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file))) << file;
    }
}

} // namespace
} // namespace sallowmere
