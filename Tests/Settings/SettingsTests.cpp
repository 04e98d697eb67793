// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Settings/Settings.h"

#include "Support/FakeFileSystem.h"
#include "Support/Texts.h"
#include "Support/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

/// Exists in memory only.
const std::string home = "/nowhere/home";
const std::string path = home + "/.config/sallowmere/settings.json";

const std::string numberKeys[] = {
    "fiveHourLimit",     "weeklyLimit",     "weeklyFableLimit", "weightInput", "weightOutput",
    "weightCacheCreate", "weightCacheRead", "showIdleHours",    "maxSessions", "wingWidth"};

/// The settings that a file with this text gives.
Settings loaded(const std::string& text) {
    FakeFileSystem files;
    files.addFile(path, text);
    return Settings::load(files, home);
}

/// The settings that a file with this one member gives.
Settings with(const std::string& key, const std::string& value) {
    return loaded("{\"" + key + "\":" + value + '}');
}

double numberOf(const Settings& settings, const std::string& key) {
    const std::map<std::string, double> numbers{
        {"fiveHourLimit", settings.fiveHourLimit},
        {"weeklyLimit", settings.weeklyLimit},
        {"weeklyFableLimit", settings.weeklyFableLimit},
        {"weightInput", settings.weightInput},
        {"weightOutput", settings.weightOutput},
        {"weightCacheCreate", settings.weightCacheCreate},
        {"weightCacheRead", settings.weightCacheRead},
        {"showIdleHours", settings.showIdleHours},
        {"maxSessions", settings.maxSessions},
        {"wingWidth", settings.wingWidth},
    };
    return numbers.at(key);
}

TEST(Settings, HaveDefaults) {
    const Settings settings = Settings::defaults("/home/u");
    EXPECT_TRUE(settings.usageAPIEnabled);
    EXPECT_EQ(settings.fiveHourLimit, 50'000'000);
    EXPECT_EQ(settings.weeklyLimit, 350'000'000);
    EXPECT_EQ(settings.weeklyFableLimit, 180'000'000);
    EXPECT_EQ(settings.weightInput, 1.0);
    EXPECT_EQ(settings.weightOutput, 5.0);
    EXPECT_EQ(settings.weightCacheCreate, 1.25);
    EXPECT_EQ(settings.weightCacheRead, 0.1);
    EXPECT_THAT(utf8(settings.terminalBundleIds),
                ElementsAre("com.googlecode.iterm2", "com.mitchellh.ghostty",
                            "dev.warp.Warp-Stable", "com.github.wez.wezterm",
                            "net.kovidgoyal.kitty", "com.apple.Terminal"));
    EXPECT_FALSE(settings.weeklyResetDate);
    EXPECT_THAT(utf8(settings.terminals), IsEmpty());
    EXPECT_TRUE(settings.soundsEnabled);
    EXPECT_TRUE(settings.keystrokeAnswers);
    EXPECT_EQ(settings.showIdleHours, 12);
    EXPECT_EQ(settings.maxSessions, 8);
    EXPECT_EQ(settings.wingWidth, 96);
    EXPECT_EQ(settings.claudeRoot, "/home/u/.claude/projects");
    EXPECT_FALSE(settings.claudeBinary);
    EXPECT_EQ(utf8(settings.resumePermissionMode), "acceptEdits");
}

TEST(Settings, AreTheDefaultsWithoutAFile) {
    EXPECT_EQ(Settings::load(FakeFileSystem(), home), Settings::defaults(home));
}

TEST(Settings, AreTheDefaultsWhenTheFileIsNoObject) {
    for (const char* text : {"",
                             " ",
                             "[]",
                             "[{\"maxSessions\":3}]",
                             "null",
                             "3",
                             "\"x\"",
                             "true",
                             "not JSON at all",
                             "{",
                             "{\"maxSessions\":3",
                             "{\"maxSessions\":3,}",
                             "{\"maxSessions\":03}",
                             "{\"maxSessions\":3} {}",
                             "{\"maxSessions\":3,\"weightInput\":NaN}",
                             "{\"maxSessions\":3,\"weightInput\":1e400}",
                             "{\"maxSessions\":3,\"claudeBinary\":\"\\ud800\"}",
                             "{\"maxSessions\":3,\"claudeBinary\":\"\\udc00\"}",
                             "{\"maxSessions\":3,\"claudeBinary\":\"a\nb\"}",
                             "{\"maxSessions\":3} // three",
                             "{}"}) {
        EXPECT_EQ(loaded(text), Settings::defaults(home)) << text;
    }
}

TEST(Settings, AreTheDefaultsWhenTheFileCannotBeRead) {
    const std::string text = R"({"maxSessions":3})";
    FakeFileSystem files;
    files.addFile(path, text).readable = false;
    EXPECT_EQ(Settings::load(files, home), Settings::defaults(home));
    files.addFile(path, text).type = EntryType::directory;
    EXPECT_EQ(Settings::load(files, home), Settings::defaults(home));
    files.addFile(path, text).failsAt = 5;
    files.file(path).readLimit = 5;
    EXPECT_EQ(Settings::load(files, home), Settings::defaults(home));
}

TEST(Settings, SurviveAHugeOrBinaryFile) {
    std::string binary;
    for (int i = 0; i < 100'000; ++i) {
        binary += static_cast<char>(i * 31 % 256);
    }
    EXPECT_EQ(loaded(binary), Settings::defaults(home));
    EXPECT_EQ(loaded(std::string(8'000'000, '\0')), Settings::defaults(home));
    EXPECT_EQ(loaded(std::string(8'000'000, '[')), Settings::defaults(home));
    EXPECT_EQ(loaded(std::string(8'000'000, ' ') + R"({"maxSessions":3})").maxSessions, 3);
}

TEST(Settings, TakeAByteOrderMarkOnce) {
    EXPECT_EQ(loaded("\xEF\xBB\xBF{\"maxSessions\":3}").maxSessions, 3);
    EXPECT_EQ(loaded("\xEF\xBB\xBF\xEF\xBB\xBF{\"maxSessions\":3}").maxSessions, 8);
    EXPECT_EQ(loaded(" \xEF\xBB\xBF{\"maxSessions\":3}").maxSessions, 8);
}

TEST(Settings, KeepNumbersWithinTheirBounds) {
    struct Row {
        std::string key;
        std::string value;
        double result;
    };
    for (const Row& row : {
             Row{"fiveHourLimit", "0", 1},
             Row{"fiveHourLimit", "-5", 1},
             Row{"fiveHourLimit", "0.999", 1},
             Row{"fiveHourLimit", "1.5", 1.5},
             Row{"fiveHourLimit", "1e300", 1e300},
             Row{"weeklyLimit", "0", 1},
             Row{"weeklyLimit", "-1e300", 1},
             Row{"weeklyLimit", "1e18", 1e18},
             Row{"weeklyFableLimit", "0", 1},
             Row{"weeklyFableLimit", "123456789012345678901234567890",
                 123456789012345678901234567890.0},
             Row{"weightInput", "-1", 0},
             Row{"weightInput", "0", 0},
             Row{"weightInput", "2.5", 2.5},
             Row{"weightInput", "1e300", 1e300},
             Row{"weightOutput", "-1", 0},
             Row{"weightOutput", "0.25", 0.25},
             Row{"weightCacheCreate", "-0.001", 0},
             Row{"weightCacheCreate", "3", 3},
             Row{"weightCacheRead", "-1e300", 0},
             Row{"weightCacheRead", "0.5", 0.5},
             Row{"showIdleHours", "0", 0.1},
             Row{"showIdleHours", "-3", 0.1},
             Row{"showIdleHours", "0.1", 0.1},
             Row{"showIdleHours", "24.5", 24.5},
             Row{"showIdleHours", "168", 168},
             Row{"showIdleHours", "500", 168},
             Row{"showIdleHours", "1e300", 168},
             Row{"maxSessions", "0", 1},
             Row{"maxSessions", "-1e300", 1},
             Row{"maxSessions", "0.5", 1},
             Row{"maxSessions", "1", 1},
             Row{"maxSessions", "7.9", 7},
             Row{"maxSessions", "49.9", 49},
             Row{"maxSessions", "50", 50},
             Row{"maxSessions", "50.5", 50},
             Row{"maxSessions", "1000", 50},
             Row{"maxSessions", "1e300", 50},
             Row{"maxSessions", "123456789012345678901234567890", 50},
             Row{"maxSessions", "-123456789012345678901234567890", 1},
             Row{"wingWidth", "10", 40},
             Row{"wingWidth", "40", 40},
             Row{"wingWidth", "100.5", 100.5},
             Row{"wingWidth", "240", 240},
             Row{"wingWidth", "1000", 240},
         }) {
        EXPECT_EQ(numberOf(with(row.key, row.value), row.key), row.result)
            << row.key << ' ' << row.value;
    }
}

TEST(Settings, CountTruthsAsNumbers) {
    EXPECT_EQ(with("fiveHourLimit", "true").fiveHourLimit, 1);
    EXPECT_EQ(with("weightOutput", "true").weightOutput, 1);
    EXPECT_EQ(with("weightOutput", "false").weightOutput, 0);
    EXPECT_EQ(with("maxSessions", "true").maxSessions, 1);
    EXPECT_EQ(with("wingWidth", "false").wingWidth, 40);
}

TEST(Settings, IgnoreWhatIsNoNumber) {
    for (const std::string& key : numberKeys) {
        for (const char* value : {R"("20")", "null", "[20]", R"({"value":20})"}) {
            EXPECT_EQ(with(key, value), Settings::defaults(home)) << key << ' ' << value;
        }
    }
}

TEST(Settings, TakeTrueAndFalseAlone) {
    EXPECT_FALSE(with("usageAPIEnabled", "false").usageAPIEnabled);
    EXPECT_FALSE(with("soundsEnabled", "false").soundsEnabled);
    EXPECT_FALSE(with("keystrokeAnswers", "false").keystrokeAnswers);
    for (const char* key : {"usageAPIEnabled", "soundsEnabled", "keystrokeAnswers"}) {
        for (const char* value : {"true", "0", "1", "0.0", R"("false")", "null", "[false]"}) {
            EXPECT_EQ(with(key, value), Settings::defaults(home)) << key << ' ' << value;
        }
    }
}

TEST(Settings, ReplaceTheTerminalIdentifiersUnlessThereAreNone) {
    EXPECT_THAT(utf8(with("terminalBundleIds", R"(["One","two"])").terminalBundleIds),
                ElementsAre("One", "two"));
    EXPECT_THAT(utf8(with("terminalBundleIds", R"([""])").terminalBundleIds), ElementsAre(""));
    for (const char* value : {"[]", R"("One")", R"(["One",2])", R"(["One",null])", "{}", "null"}) {
        EXPECT_EQ(with("terminalBundleIds", value), Settings::defaults(home)) << value;
    }
}

TEST(Settings, LowerTheTerminalNames) {
    EXPECT_THAT(utf8(with("terminals", R"(["iTerm2"])").terminals), ElementsAre("iterm2"));
    EXPECT_THAT(utf8(with("terminals", R"(["GNOME Terminal","KÖNSOLE",""])").terminals),
                ElementsAre("gnome terminal", "könsole", ""));
    EXPECT_THAT(utf8(with("terminals", "[]").terminals), IsEmpty());
    for (const char* value : {R"("iTerm2")", R"(["iTerm2",2])", R"([["iTerm2"]])", "null"}) {
        EXPECT_EQ(with("terminals", value), Settings::defaults(home)) << value;
    }
}

TEST(Settings, ExpandTheTranscriptsDirectory) {
    struct Row {
        std::string value;
        std::string root;
    };
    for (const Row& row : {
             Row{R"("~")", home},
             Row{R"("~/logs")", home + "/logs"},
             Row{R"("~other/logs")", "~other/logs"},
             Row{R"("/logs/~/x")", "/logs/~/x"},
             Row{R"("relative")", "relative"},
             Row{R"("")", ""},
             Row{R"("/lögs")", "/lögs"},
         }) {
        EXPECT_EQ(with("claudeRoot", row.value).claudeRoot, row.root);
    }
    EXPECT_EQ(with("claudeRoot", "7"), Settings::defaults(home));
    EXPECT_EQ(with("claudeRoot", "null"), Settings::defaults(home));
}

TEST(Settings, TakeTheBinaryAsItIsWritten) {
    EXPECT_THAT(with("claudeBinary", R"("~/bin/claude")").claudeBinary,
                Optional(std::string("~/bin/claude")));
    EXPECT_THAT(with("claudeBinary", R"(" ")").claudeBinary, Optional(std::string(" ")));
    EXPECT_EQ(with("claudeBinary", R"("")").claudeBinary, std::nullopt);
    EXPECT_EQ(with("claudeBinary", "true").claudeBinary, std::nullopt);
}

TEST(Settings, TakeATimeWithoutFractionForTheWeeklyReset) {
    EXPECT_EQ(with("weeklyResetISO", R"("2025-06-02T09:00:00Z")").weeklyResetDate,
              at("2025-06-02T09:00:00Z"));
    EXPECT_EQ(with("weeklyResetISO", R"("2025-06-02T09:00:00+02:00")").weeklyResetDate,
              at("2025-06-02T07:00:00Z"));
    for (const char* value :
         {R"("2025-06-02")", R"("2025-06-02T09:00:00")", R"("2025-06-02T09:00:00.0Z")",
          R"("2025-06-02T09:00:00.000Z")", R"("2025-06-02 09:00:00Z")",
          R"("2025-06-02T09:00:00+0200")", R"("2025-02-29T09:00:00Z")", R"("monday")", R"("")",
          "1748854800", "null"}) {
        EXPECT_EQ(with("weeklyResetISO", value), Settings::defaults(home)) << value;
    }
    EXPECT_EQ(with("weeklyResetDate", R"("2025-06-02T09:00:00Z")"), Settings::defaults(home));
}

TEST(Settings, TakeAKnownPermissionModeOnly) {
    for (const std::string mode :
         {"acceptEdits", "auto", "bypassPermissions", "manual", "dontAsk", "plan"}) {
        EXPECT_EQ(utf8(with("resumePermissionMode", '"' + mode + '"').resumePermissionMode), mode);
    }
    EXPECT_EQ(utf8(with("resumePermissionMode", R"("default")").resumePermissionMode), "manual");
    for (const char* value : {R"("delegate")", R"("Plan")", R"("plan ")", R"("Default")", R"("")",
                              "1", "null", R"(["plan"])"}) {
        EXPECT_EQ(with("resumePermissionMode", value), Settings::defaults(home)) << value;
    }
}

TEST(Settings, AreOverlaidMemberByMember) {
    Settings expected = Settings::defaults(home);
    expected.usageAPIEnabled = false;
    expected.wingWidth = 100;
    expected.terminals = QStringList{QStringLiteral("kitty")};
    EXPECT_EQ(loaded(R"({"usageAPIEnabled":false,"maxSessions":"many","unknown":{"maxSessions":3},)"
                     R"("weightInput":null,"terminals":["Kitty"],"wingWidth":100})"),
              expected);
}

TEST(Settings, KeepTheRestOfAFileWithInvalidBytes) {
    const Settings settings = loaded("{\"claudeRoot\":\"/a\xFFz\",\"maxSessions\":3}");
    EXPECT_EQ(settings.maxSessions, 3);
    EXPECT_EQ(settings.claudeRoot, "/a\xEF\xBF\xBDz");
}

} // namespace
} // namespace sallowmere
