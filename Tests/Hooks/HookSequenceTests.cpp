// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/HookCalls.h"
#include "Hooks/HookHome.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace sallowmere {
namespace {

using namespace hookCalls;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const std::string marker = ".asked-" + session;
const std::string bash = session + ": Bash: npm test";
const std::string reminded = session + ": A permission is needed";

class HookSequence : public HookHome {};

TEST_F(HookSequence, OfAPermissionShowsOneRequestUntilTheToolWasUsed) {
    call(event("SessionStart", {{"source", "startup"}}));
    call(event("UserPromptSubmit", {{"prompt", "Test it"}}));
    call(event("PreToolUse", {{"tool_name", "Bash"}, {"tool_use_id", "toolu_01AbCdEf"}}));
    EXPECT_THAT(everything(), IsEmpty());
    call(permissionRequest());
    EXPECT_THAT(shown(), ElementsAre(bash));
    const std::vector<std::string> before = names();
    call(notification());
    EXPECT_EQ(names(), before);
    call(toolUsed());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookSequence, OfAQuestionShowsNothing) {
    for (const QJsonObject& asked : {question(), planApproval()}) {
        call(asked);
        EXPECT_THAT(pending(), IsEmpty());
        EXPECT_THAT(names(), ElementsAre(marker));
        call(notification());
        EXPECT_THAT(names(), ElementsAre(marker));
        call(toolUsed());
        EXPECT_THAT(names(), IsEmpty());
    }
}

TEST_F(HookSequence, OfAReminderAloneShowsIt) {
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
    call(toolUsed());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookSequence, AfterAQuestionIsAsUsual) {
    call(question());
    call(toolUsed());
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
}

TEST_F(HookSequence, WithinAQuestionShowsThePermissionOfAnotherTool) {
    call(question());
    call(permissionRequest());
    EXPECT_THAT(shown(), ElementsAre(bash));
}

TEST_F(HookSequence, ShowsEachOfSeveralPermissions) {
    call(permissionRequest());
    call(permissionRequest());
    call(permissionRequest(
        {{"tool_name", "Write"}, {"tool_input", QJsonObject{{"file_path", "/w/a.txt"}}}}));
    EXPECT_THAT(shown(), ElementsAre(bash, bash, session + ": Write: a.txt"));
    call(event("Stop", {{"stop_hook_active", false}}));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(HookSequence, OfOneSessionDoesNotTouchAnother) {
    call(permissionRequest());
    call(question(otherSession));
    EXPECT_THAT(shown(), ElementsAre(bash));
    call(event("Stop", {}, otherSession));
    EXPECT_THAT(shown(), ElementsAre(bash));
    call(notification({}, otherSession));
    EXPECT_THAT(shown(), ElementsAre(bash, otherSession + ": A permission is needed"));
    call(question(otherSession));
    call(event("SessionEnd", {{"reason", "clear"}}));
    EXPECT_THAT(shown(), ElementsAre(otherSession + ": A permission is needed"));
    EXPECT_THAT(names(), SizeIs(2));
    EXPECT_TRUE(std::filesystem::exists(in(".asked-" + otherSession)));
}

TEST_F(HookSequence, MayTakeUpAfterARequestThatExpired) {
    call(permissionRequest());
    setAge(names().front(), 91);
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
    EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(HookSequence, IsNotRemindedOfARequestThatIsPending) {
    call(permissionRequest());
    setAge(names().front(), 60);
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(bash));
}

TEST_F(HookSequence, CountsTheRequestsThatOthersWrote) {
    write("mine.json", R"({"session_id":")" + session + R"(","message":"by another hook"})");
    write("theirs.json", R"({"session_id":")" + otherSession + R"("})");
    call(notification());
    EXPECT_THAT(names(), ElementsAre("mine.json", "theirs.json"));
    call(toolUsed());
    EXPECT_THAT(names(), ElementsAre("theirs.json"));
}

TEST_F(HookSequence, CountsMarkersForAMinute) {
    call(question());
    setAge(marker, 30);
    call(notification());
    EXPECT_THAT(pending(), IsEmpty());
    setAge(marker, 60);
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
}

TEST_F(HookSequence, RenewsMarkers) {
    call(question());
    setAge(marker, 1'000);
    call(question());
    call(notification());
    EXPECT_THAT(names(), ElementsAre(marker));
}

TEST_F(HookSequence, DoesNotCountMarkersOfAClockThatWasSetBack) {
    call(question());
    setAge(marker, -30);
    call(notification());
    EXPECT_THAT(pending(), IsEmpty());
    setAge(marker, -3'600);
    call(notification());
    EXPECT_THAT(shown(), ElementsAre(reminded));
}

/// What each event leaves of a pending request and of a marker, and adds where there is nothing.
struct Effect {
    std::string event;
    bool settles = false;
    bool adds = false;
};

Effect effectOf(const std::string& name) {
    const std::vector<std::string> settling{"PostToolUse", "PostToolUseFailure", "UserPromptSubmit",
                                            "Stop", "SessionEnd"};
    return {name, std::find(settling.begin(), settling.end(), name) != settling.end(),
            name == "PermissionRequest" || name == "Notification"};
}

TEST_F(HookSequence, KnowsTheEventsOfBothClients) {
    std::vector<std::string> events = eventsOfBoth();
    for (const std::string& name : eventsOfTheNewer()) {
        events.push_back(name);
    }
    // With all keys that make some event do something.
    const QJsonObject keys{{"tool_name", "Bash"},
                           {"tool_input", QJsonObject{{"command", "npm test"}}},
                           {"notification_type", "permission_prompt"},
                           {"message", "A permission is needed"}};
    for (const std::string& name : events) {
        const Effect effect = effectOf(name);
        call(event(name, keys));
        EXPECT_THAT(pending(), SizeIs(effect.adds ? 1 : 0)) << name;
        std::filesystem::remove_all(directory());
        write("request.json", R"({"session_id":")" + session + R"("})");
        write(marker, "");
        call(event(name, keys));
        EXPECT_NE(std::filesystem::exists(in("request.json")), effect.settles) << name;
        EXPECT_NE(std::filesystem::exists(in(marker)), effect.settles) << name;
        std::filesystem::remove_all(directory());
    }
}

TEST_F(HookSequence, IsRemindedOfPermissionsOnly) {
    for (const char* type :
         {"idle_prompt", "agent_needs_input", "auth_success", "", "PERMISSION_PROMPT"}) {
        call(notification({{"notification_type", type}}));
    }
    QJsonObject untyped = notification();
    untyped.remove("notification_type");
    call(untyped);
    call(notification({{"notification_type", 7}}));
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(HookSequence, WorksWithTheFewerKeysOfOlderClients) {
    QJsonObject call1 = permissionRequest();
    for (const char* key : {"prompt_id", "effort", "permission_suggestions"}) {
        call1.remove(key);
    }
    call(call1);
    EXPECT_THAT(shown(), ElementsAre(bash));
}

TEST_F(HookSequence, MakesNoDirectoryToTidy) {
    for (const char* name : {"PostToolUse", "Stop", "SessionEnd", "SessionStart", "PreToolUse"}) {
        call(event(name));
    }
    EXPECT_THAT(everything(), IsEmpty());
}

TEST_F(HookSequence, RemovesWhatKilledCallsAndSessionsLeft) {
    for (const char* name : {".new-aged", ".asked-aged", ".new-young", ".asked-young", "notes.txt",
                             "a.json.tmp", ".hidden"}) {
        write(name, "");
        setAge(name, 1'000);
    }
    write("broken.json", "{");
    setAge(".new-young", 5);
    setAge(".asked-young", 5);
    call(toolUsed());
    EXPECT_THAT(names(), UnorderedElementsAre(".new-young", ".asked-young", "notes.txt",
                                              "a.json.tmp", ".hidden", "broken.json"));
}

} // namespace
} // namespace sallowmere
