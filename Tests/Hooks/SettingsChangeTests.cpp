// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSettings.h"
#include "HookSnippet.h"
#include "Hooks/SettingsShapes.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string ours = R"({ "hooks": [{ "type": "command", "command": "sallowmere-notify" }] })";
const std::string users = R"({ "hooks": [{ "type": "command", "command": "beep" }] })";

std::string snippet() {
    std::ifstream file(SALLOWMERE_HOOK_SETTINGS);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string stop(const std::string& list) {
    return "{\n  \"hooks\": {\n    \"Stop\": " + list + "\n  }\n}\n";
}

std::string withoutHooks(const std::string& text) {
    return HookSettings::removed(text, std::nullopt).text;
}

std::string refusalOf(const std::string& text) {
    const HookSettings::Outcome outcome = HookSettings::installed(text);
    EXPECT_EQ(outcome.text, text);
    EXPECT_THAT(outcome.events, IsEmpty());
    std::string reason = outcome.refusal ? outcome.refusal->reason : "";
    const auto removal = HookSettings::removed(text, std::nullopt).refusal;
    EXPECT_EQ(removal ? removal->reason : "", reason);
    const auto state = HookSettings::state(text).refusal;
    EXPECT_EQ(state ? state->reason : "", reason);
    return reason;
}

TEST(HookSnippet, IsTheSettingsFile) {
    EXPECT_EQ(HookSnippet::text(), snippet());
    EXPECT_THAT(HookSnippet::events(), SizeIs(7));
}

TEST(HookSnippet, KnowsItsCommand) {
    for (const char* command :
         {"sallowmere-notify", "/usr/bin/sallowmere-notify", "~/bin/sallowmere-notify",
          "$HOME/bin/sallowmere-notify", " sallowmere-notify ", "\"sallowmere-notify\"",
          "'/my programs/sallowmere-notify'", "./sallowmere-notify"}) {
        EXPECT_TRUE(HookSnippet::isOurs(command)) << command;
    }
    for (const char* command :
         {"", "sallowmere", "sallowmere-notify2", "my-sallowmere-notify", "sallowmere-notify --x",
          "echo sallowmere-notify", "beep;/usr/bin/sallowmere-notify", "sallowmere-notify/",
          "sallowmere-notify/beep", "beep && sallowmere-notify", "\"", "\"sallowmere-notify",
          "'beep' '/sallowmere-notify'", "sallowmere-notify&"}) {
        EXPECT_FALSE(HookSnippet::isOurs(command)) << command;
    }
}

TEST(InstalledSettings, AreTheSnippetWhereThereWasNothing) {
    EXPECT_EQ(HookSettings::installed("").text, snippet());
    EXPECT_EQ(HookSettings::installed("{}\n").text, snippet());
    EXPECT_EQ(HookSettings::installed("\n").text, "\n" + snippet());
    EXPECT_EQ(HookSettings::installed("\xEF\xBB\xBF").text, "\xEF\xBB\xBF" + snippet());
    EXPECT_EQ(HookSettings::installed("// none").text, "// none\n" + snippet());
    EXPECT_EQ(HookSettings::installed("{\n  \"hooks\": {}\n}\n").text, snippet());
}

TEST(InstalledSettings, ComeBackEmptyInTheirOwnWay) {
    for (const char* text : {"", "\n", "{}", "{\n}", "{ }\n", "\xEF\xBB\xBF", "\xEF\xBB\xBF{}",
                             "// none", "// none\r\n", "{\"hooks\":{}}", "{ \"hooks\": { } }"}) {
        const std::string installed = HookSettings::installed(text).text;
        EXPECT_EQ(HookSettings::removed(installed, text).text, text);
    }
}

TEST(InstalledSettings, FollowTheStyleOfTheFile) {
    const std::string tabs = HookSettings::installed("{\r\n\t\"a\": 1\r\n}").text;
    EXPECT_THAT(tabs, StartsWith("{\r\n\t\"a\": 1,\r\n\t\"hooks\": {\r\n\t\t\"PermissionRequest\": "
                                 "[\r\n\t\t\t{\r\n\t\t\t\t\"matcher\": \"*\",\r\n"));
    const std::string line = HookSettings::installed(R"({"a":1})").text;
    EXPECT_THAT(line, StartsWith(R"({"a":1,"hooks":{"PermissionRequest":[{"matcher":"*","hooks")"));
    EXPECT_EQ(countOf(line, "\n") + countOf(line, " "), 0U);
}

TEST(InstalledSettings, HaveOurEntryBehindTheUsersAndTheirComments) {
    const std::string text =
        HookSettings::installed(stop("[\n      " + users + " // mine\n    ]")).text;
    EXPECT_THAT(text, HasSubstr(users
                                + ", // mine\n      { \"hooks\": [{ \"type\": \"command\", "
                                  "\"command\": \"sallowmere-notify\", \"timeout\": 5 }] }\n"
                                  "    ],\n    \"PermissionRequest\": ["));
}

TEST(InstalledSettings, StandInNoCommentThatACarriageReturnEnds) {
    for (const char* text :
         {"{\"a\": 1 // c\r}", "{ // c\r}", "{\"a\": 1, \"hooks\": { // c\r}}"}) {
        const std::string installed = HookSettings::installed(text).text;
        EXPECT_THAT(HookSettings::state(installed).missing, IsEmpty()) << installed;
        EXPECT_THAT(HookSettings::state(installed).present, SizeIs(7)) << installed;
        EXPECT_EQ(withoutHooks("/* new */" + installed).find("sallowmere"), std::string::npos);
    }
}

TEST(InstalledSettings, AreCompletedWhereSomeEventsMiss) {
    const std::string text = stop("[" + ours + "]");
    const HookSettings::State state = HookSettings::state(text);
    EXPECT_THAT(state.present, ElementsAre("Stop"));
    EXPECT_THAT(state.missing, ElementsAre("PermissionRequest", "Notification", "PostToolUse",
                                           "PostToolUseFailure", "UserPromptSubmit", "SessionEnd"));
    const HookSettings::Outcome outcome = HookSettings::installed(text);
    EXPECT_EQ(outcome.events, state.missing);
    EXPECT_EQ(countOf(outcome.text, "sallowmere-notify"), 7U);
    EXPECT_EQ(HookSettings::removed(outcome.text, text).text, "{}\n");
}

TEST(InstalledSettings, CountEntriesByWhatTheyMean) {
    for (
        const char* hook :
        {R"({ "command": "/opt/sallowmere-notify", "type": "command" })",
         R"({ "type": "command", "command": "sallowmere\u002dnotify", "timeout": 60 })",
         R"({ "type": "command", "command": "beep" }, { "type": "command", "command": "sallowmere-notify" })"}) {
        const std::string text =
            stop("[{ \"matcher\": \"x\", \"hooks\": [" + std::string(hook) + "] }]");
        EXPECT_THAT(HookSettings::state(text).present, ElementsAre("Stop")) << hook;
    }
    for (const char* entry :
         {R"({ "type": "command", "command": "sallowmere-notify" })", "7", "null", "[]",
          R"({ "hooks": { "type": "command", "command": "sallowmere-notify" } })",
          R"({ "hooks": [{ "type": "prompt", "command": "sallowmere-notify" }] })",
          R"({ "hooks": [{ "type": "command", "command": ["sallowmere-notify"] }] })",
          R"({ "hooks": ["sallowmere-notify", { "command": "sallowmere-notify" }] })"}) {
        const std::string text = stop("[" + std::string(entry) + "]");
        EXPECT_THAT(HookSettings::state(text).present, IsEmpty()) << entry;
    }
}

TEST(RemovedHooks, LeaveTheUsersInTheSameEntry) {
    const std::string both = R"([{ "hooks": [{ "type": "command", "command": "beep" }, /* c */ )"
                             R"({ "type": "command", "command": "sallowmere-notify" }] }])";
    EXPECT_EQ(withoutHooks(stop(both)),
              stop(R"([{ "hooks": [{ "type": "command", "command": "beep" } /* c */] }])"));
}

TEST(RemovedHooks, LeaveTheUsersEntriesWhereverTheyStand) {
    EXPECT_EQ(withoutHooks(stop("[\n      " + ours + ",\n      " + users + "\n    ]")),
              stop("[\n      " + users + "\n    ]"));
    EXPECT_EQ(withoutHooks(stop("[" + users + ", " + ours + ", {}]")), stop("[" + users + ", {}]"));
    EXPECT_EQ(withoutHooks(stop("[" + ours + ", " + users + ", " + ours + "]")),
              stop("[ " + users + "]"));
}

TEST(RemovedHooks, TakeWhatTheyLeaveEmptyAlong) {
    EXPECT_EQ(withoutHooks(stop("[" + ours + "]")), "{}\n");
    EXPECT_EQ(withoutHooks("{ \"a\": 1, \"hooks\": { \"Stop\": [" + ours + "] }, \"b\": 2 }"),
              "{ \"a\": 1, \"b\": 2 }");
    EXPECT_EQ(withoutHooks("{\"hooks\":{\"PreToolUse\":[],\"Stop\":[" + ours + "]}}"),
              "{\"hooks\":{\"PreToolUse\":[]}}");
}

TEST(RemovedHooks, LeaveWhatHasAComment) {
    EXPECT_EQ(withoutHooks(stop("[ // mine\n      " + ours + "\n    ]")), stop("[ // mine\n    ]"));
    EXPECT_EQ(withoutHooks("{ \"hooks\": { /* mine */ \"Stop\": [" + ours + "] } }"),
              "{ \"hooks\": { /* mine */ } }");
}

TEST(RemovedHooks, LeaveNoCommentThatSwallowsWhatFollows) {
    EXPECT_EQ(withoutHooks(stop("[{}, // c\n" + ours + ", " + users + "]")),
              stop("[{}, // c\n " + users + "]"));
    EXPECT_EQ(withoutHooks(stop("[{}, // c\n" + ours + ",\n" + ours + ", {}]")),
              stop("[{}, // c\n {}]"));
    EXPECT_EQ(withoutHooks(stop("[{}, // c\n" + ours + "]")), stop("[{} // c\n]"));
}

TEST(RemovedHooks, LeaveListsThatWereThereBefore) {
    const std::string before = "{\n  \"a\": 1,\n  \"hooks\": { \"Stop\": [ ] }\n}\n";
    std::string text = HookSettings::installed(before).text;
    text.replace(text.find('1'), 1, "2");
    EXPECT_EQ(HookSettings::removed(text, before).text,
              "{\n  \"a\": 2,\n  \"hooks\": { \"Stop\": [ ] }\n}\n");
    EXPECT_EQ(withoutHooks(text), "{\n  \"a\": 2\n}\n");
}

TEST(RemovedHooks, NeedNoOriginalThatCanBeRead) {
    EXPECT_EQ(HookSettings::removed(snippet(), "{").text, "{}\n");
    EXPECT_EQ(HookSettings::removed(snippet(), snippet()).text, "{}\n");
    EXPECT_EQ(HookSettings::removed(snippet(), "{ }").text, "{ }\n");
}

TEST(RemovedHooks, AreNotThereWhereThereAreNone) {
    for (const std::string& text : {std::string(), std::string("{}"), stop("[" + users + "]")}) {
        const HookSettings::Outcome outcome = HookSettings::removed(text, "{\"old\": 1}");
        EXPECT_FALSE(outcome.refusal);
        EXPECT_THAT(outcome.events, IsEmpty());
        EXPECT_EQ(outcome.text, text);
    }
}

TEST(RefusedSettings, AreOfAnotherKind) {
    EXPECT_EQ(refusalOf("[]"), "the settings are no object");
    EXPECT_EQ(refusalOf("null"), "the settings are no object");
    EXPECT_EQ(refusalOf("{\"hooks\": []}"), "\"hooks\" is no object");
    EXPECT_EQ(refusalOf("{\"hooks\": null}"), "\"hooks\" is no object");
    EXPECT_EQ(refusalOf("{\"hooks\": {\"Stop\": {}}}"), "\"Stop\" is no list");
    EXPECT_FALSE(HookSettings::installed("{\"hooks\": {\"PreToolUse\": {}}}").refusal);
}

TEST(RefusedSettings, HaveAKeyTwiceWhereItMatters) {
    EXPECT_EQ(refusalOf(R"({"hooks": {}, "\u0068ooks": {}})"),
              "\"hooks\" stands here for the second time");
    EXPECT_EQ(refusalOf(R"({"hooks": {"Stop": [], "Stop": []}})"),
              "\"Stop\" stands here for the second time");
    EXPECT_EQ(refusalOf(R"({"hooks": {"Stop": [{"hooks": [], "hooks": []}]}})"),
              "\"hooks\" stands here for the second time");
    EXPECT_EQ(refusalOf(R"({"hooks": {"Stop": [{"hooks": [{"type": "a", "type": "b"}]}]}})"),
              "\"type\" stands here for the second time");
    const char* elsewhere = R"({"a": 1, "a": 2, "hooks": {"PreToolUse": [], "PreToolUse": []}})";
    EXPECT_FALSE(HookSettings::installed(elsewhere).refusal);
}

TEST(RefusedSettings, DoNotParse) {
    EXPECT_EQ(refusalOf("{\"a\": 1,}"), "there is nothing behind this comma");
    EXPECT_EQ(refusalOf("{\"a\": \xFF}"), "this is not UTF-8");
    EXPECT_EQ(refusalOf("{'a': 1}"), "a key in quotes is missing");
}

} // namespace
} // namespace sallowmere
