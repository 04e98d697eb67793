// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/SwitchHome.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace sallowmere {
namespace {

using testing::HasSubstr;

class SwitchBackup : public SwitchHome {};

TEST_F(SwitchBackup, StaysWhileTheHookIsCompleted) {
    const std::string original = "{ \"a\": 1 }";
    write(original);
    done("install");
    std::string text = contentOf(settings());
    write(text.replace(text.find("\"Stop\""), 2, "\"x"));
    done("install");
    EXPECT_EQ(contentOf(backup()), original);
    EXPECT_FALSE(fs::exists(backup() + ".1"));
}

TEST_F(SwitchBackup, IsMadeOfSettingsThatWereHalfInstalledByHand) {
    std::string text = hookSnippet();
    text.replace(text.find("\"Stop\""), 2, "\"x");
    write(text);
    done("install");
    EXPECT_EQ(contentOf(backup()), text);
    done("remove");
    EXPECT_THAT(contentOf(settings()), HasSubstr("\"xtop\""));
    EXPECT_THAT(contentOf(settings()), HasSubstr("sallowmere-notify"));
    EXPECT_EQ(call("status").exitStatus, 3);
}

TEST_F(SwitchBackup, OfAnEarlierTimeIsSetAside) {
    write("{ \"a\": 1 }");
    done("install");
    write("{ \"a\": 2 }");
    done("install");
    write("{ \"a\": 3 }");
    done("install");
    EXPECT_EQ(contentOf(backup() + ".1"), "{ \"a\": 1 }");
    EXPECT_EQ(contentOf(backup() + ".2"), "{ \"a\": 2 }");
    EXPECT_EQ(contentOf(backup()), "{ \"a\": 3 }");
    done("remove");
    EXPECT_EQ(contentOf(settings()), "{ \"a\": 3 }");
    EXPECT_TRUE(fs::exists(backup() + ".1"));
}

TEST_F(SwitchBackup, OfTheSameTextIsTakenAgain) {
    write("{ \"a\": 1 }");
    done("install");
    write("{ \"a\": 1 }");
    done("install");
    EXPECT_FALSE(fs::exists(backup() + ".1"));
    done("remove");
    EXPECT_EQ(contentOf(settings()), "{ \"a\": 1 }");
}

TEST_F(SwitchBackup, OfSettingsThatWereNotThereGivesWayToAnother) {
    done("install");
    write("{ \"a\": 1 }");
    done("install");
    EXPECT_FALSE(fs::exists(made()));
    done("remove");
    EXPECT_EQ(contentOf(settings()), "{ \"a\": 1 }");
    done("install");
    fs::remove(settings());
    done("install");
    EXPECT_EQ(contentOf(backup() + ".1"), "{ \"a\": 1 }");
    done("remove");
    EXPECT_FALSE(fs::exists(settings()));
}

TEST_F(SwitchBackup, TellsWhichListsWereThere) {
    write("{\n  \"a\": 1,\n  \"hooks\": { \"Stop\": [ ] }\n}\n");
    done("install");
    std::string text = contentOf(settings());
    write(text.replace(text.find('1'), 1, "2"));
    done("remove");
    EXPECT_EQ(contentOf(settings()), "{\n  \"a\": 2,\n  \"hooks\": { \"Stop\": [ ] }\n}\n");
}

TEST_F(SwitchBackup, ThatIsNoFileStopsEverything) {
    write("{}");
    home.makeDirectory(".claude/settings.json.sallowmere-backup");
    EXPECT_THAT(refused("install"), HasSubstr("settings.json.sallowmere-backup is a directory"));
}

} // namespace
} // namespace sallowmere
