// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/SwitchHome.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string events = "PermissionRequest, Notification, PostToolUse, PostToolUseFailure, "
                           "UserPromptSubmit, Stop, SessionEnd";

class SwitchProgram : public SwitchHome {};

TEST_F(SwitchProgram, TellsHowItIsUsed) {
    const std::string usage = done("--help");
    EXPECT_THAT(usage, StartsWith("usage: sallowmere-hook install "));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>(), {"help"}, {"install", "now"}, {""}, {"-h"}, {"--version"}}) {
        const Outcome outcome = run(command(arguments));
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, usage);
    }
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(SwitchProgram, MakesSettingsForTheirUserAloneAndRemovesThem) {
    EXPECT_EQ(done("install"), "installed in " + settings() + " for " + events
                                   + "\nthere were no settings before\n");
    EXPECT_EQ(contentOf(settings()), hookSnippet());
    EXPECT_EQ(modeOf(settings()), "600");
    EXPECT_EQ(modeOf(home / ".claude"), "700");
    EXPECT_EQ(modeOf(made()), "600");
    EXPECT_EQ(done("remove"), "removed from " + settings() + " for " + events
                                  + "; the file held nothing else and is gone\n");
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(SwitchProgram, LeavesADirectoryThatWasThere) {
    home.makeDirectory(".claude");
    done("install");
    done("remove");
    EXPECT_THAT(everything(), ElementsAre(".claude/"));
    done("install");
    home.write(".claude/projects/a.jsonl", "");
    done("remove");
    EXPECT_TRUE(fs::exists(home / ".claude/projects/a.jsonl"));
    EXPECT_FALSE(fs::exists(settings()));
}

TEST_F(SwitchProgram, LeavesADirectoryThatIsInUseSince) {
    done("install");
    home.write(".claude/projects/a.jsonl", "");
    done("remove");
    EXPECT_THAT(everything(), ElementsAre(".claude/", ".claude/projects/",
                                          StartsWith(".claude/projects/a.jsonl ")));
}

TEST_F(SwitchProgram, LeavesSettingsThatHoldMoreSince) {
    done("install");
    std::string text = contentOf(settings());
    write(text.replace(0, 1, "{\n  \"model\": \"opus\","));
    EXPECT_EQ(done("remove"), "removed from " + settings() + " for " + events + '\n');
    EXPECT_THAT(everything(), ElementsAre(".claude/", ".claude/settings.json 644 {\n  \"model\": "
                                                      "\"opus\"\n}\n"));
}

TEST_F(SwitchProgram, GivesTheVeryFileBack) {
    for (const char* text : {"", "{}", "{\r\n\t\"a\": 1 // one\r\n}", "\xEF\xBB\xBF{ }\n"}) {
        write(text);
        EXPECT_EQ(done("install"), "installed in " + settings() + " for " + events
                                       + "\nthe settings as they were: " + backup() + '\n');
        EXPECT_EQ(contentOf(backup()), text);
        EXPECT_EQ(modeOf(backup()), "600");
        EXPECT_EQ(done("remove"), "removed from " + settings() + " for " + events + '\n');
        EXPECT_EQ(contentOf(settings()), text);
        EXPECT_FALSE(fs::exists(backup()));
    }
}

TEST_F(SwitchProgram, WritesNothingWhereNothingChanges) {
    write("{}");
    EXPECT_EQ(done("remove"), "not installed in " + settings() + "; nothing was changed\n");
    EXPECT_THAT(everything(), ElementsAre(".claude/", ".claude/settings.json 644 {}"));
    done("install");
    const std::vector<std::string> before = everything();
    const ino_t inode = statusOf(settings()).st_ino;
    EXPECT_EQ(done("install"), "already installed in " + settings() + "; nothing was changed\n");
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(statusOf(settings()).st_ino, inode);
}

TEST_F(SwitchProgram, TakesTheSnippetThatWasCopiedByHandForInstalled) {
    write(hookSnippet());
    EXPECT_THAT(done("install"), StartsWith("already installed"));
    EXPECT_THAT(everything(),
                ElementsAre(".claude/", ".claude/settings.json 644 " + hookSnippet()));
    done("remove");
    EXPECT_EQ(contentOf(settings()), "{}\n");
}

TEST_F(SwitchProgram, TellsWhetherItIsInstalled) {
    const std::string found = std::string("sallowmere-notify: ") + SALLOWMERE_NOTIFY + '\n';
    const Outcome none = call("status");
    EXPECT_EQ(none.exitStatus, 3);
    EXPECT_EQ(none.output, "not installed in " + settings() + '\n' + found);
    EXPECT_EQ(none.errors, "");
    EXPECT_THAT(everything(), IsEmpty());
    done("install");
    EXPECT_EQ(done("status"), "installed in " + settings() + '\n' + found);
    std::string text = contentOf(settings());
    for (const char* name : {"\"Stop\"", "\"Notification\""}) {
        text.replace(text.find(name), 2, "\"x");
    }
    write(text);
    const Outcome partly = call("status");
    EXPECT_EQ(partly.exitStatus, 3);
    EXPECT_EQ(partly.output,
              "partly installed in " + settings() + "; missing: Notification, Stop\n" + found);
    EXPECT_THAT(done("install"),
                StartsWith("installed in " + settings() + " for Notification, Stop\n"));
}

TEST_F(SwitchProgram, TellsWhenTheHookItselfCannotBeFound) {
    for (const char* path : {"PATH=", "PATH=/usr/bin:", "PATH=/nowhere"}) {
        write("{}");
        for (const char* argument : {"install", "status", "remove"}) {
            Command alone = command({argument});
            alone.environment.front() = path;
            const Outcome outcome = run(alone);
            EXPECT_EQ(outcome.exitStatus, 0) << argument;
            EXPECT_EQ(outcome.errors.empty(), argument != std::string("install"));
            EXPECT_THAT(outcome.errors, argument == std::string("install")
                                            ? HasSubstr("no sallowmere-notify in your PATH")
                                            : HasSubstr(""));
            EXPECT_EQ(outcome.output.ends_with("sallowmere-notify: not found in PATH\n"),
                      argument == std::string("status"));
        }
    }
}

TEST_F(SwitchProgram, TellsWhereAndWhySettingsAreRefused) {
    write("{\n  \"a\": 1,\n  \"hooks\": {\"Stop\": 7}\n}\n");
    const std::string reason =
        "sallowmere-hook: " + settings() + ", line 3, column 21: \"Stop\" is no list\n";
    for (const char* argument : {"install", "remove", "status"}) {
        EXPECT_EQ(refused(argument), reason);
    }
    write("{\"a\": 1,}");
    EXPECT_THAT(refused("install"),
                HasSubstr(", line 1, column 8: there is nothing behind this comma\n"));
    write("{\"a\": \"\xFF\"}");
    EXPECT_THAT(refused("install"), EndsWith(", line 1, column 8: this is not UTF-8\n"));
}

TEST_F(SwitchProgram, NeedsAHomeDirectory) {
    Command command = this->command({"install"});
    command.environment[1] = "HOME=" + (home / "nobody");
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("nobody/.claude cannot be made: No such file"));
    EXPECT_THAT(everything(), IsEmpty());
}

} // namespace
} // namespace sallowmere
