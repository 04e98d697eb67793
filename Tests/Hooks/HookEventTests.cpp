// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookEvent.h"

#include "Hooks/HookCalls.h"
#include "RequestFiles.h"
#include "Sallowmere/Text/Json.h"
#include "Support/Texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace sallowmere {
namespace {

using namespace hookCalls;
using Kind = HookEvent::Kind;

std::optional<HookEvent> read(std::string json) {
    json.reserve(json.size() + JsonReader::padding);
    return readHookEvent(json);
}

std::optional<HookEvent> read(const QJsonObject& call) {
    return read(text(call));
}

/// The message of a permission request with this tool and input.
std::string messageOf(const QJsonValue& tool, const QJsonValue& input) {
    const auto event = read(permissionRequest({{"tool_name", tool}, {"tool_input", input}}));
    return event ? utf8(event->message) : "(none)";
}

std::string shown(const char* text) {
    return utf8(shownMessage(QString::fromUtf8(text)));
}

TEST(HookEvent, OfAPermissionNamesTheToolAndTheHeartOfItsInput) {
    EXPECT_EQ(read(permissionRequest()),
              (HookEvent{Kind::permission, QString::fromStdString(session), "Bash: npm test"}));
    EXPECT_EQ(messageOf("Write", QJsonObject{{"content", "x"}, {"file_path", "/w/src/a.txt"}}),
              "Write: a.txt");
    EXPECT_EQ(messageOf("WebFetch", QJsonObject{{"url", "https://example.org/"}}),
              "WebFetch: https://example.org/");
}

TEST(HookEvent, OfAPermissionNamesTheToolAloneWhenItsInputSaysNothing) {
    for (const QJsonValue& input :
         {QJsonValue(), QJsonValue(QJsonObject()), QJsonValue("npm test"), QJsonValue(7),
          QJsonValue(QJsonObject{{"command", ""}}), QJsonValue(QJsonObject{{"command", " \n\t"}}),
          QJsonValue(QJsonObject{{"command", 7}}), QJsonValue(QJsonObject{{"other", "x"}})}) {
        EXPECT_EQ(messageOf("mcp__shop__list", input), "mcp__shop__list");
    }
    QJsonObject call = permissionRequest();
    call.remove("tool_input");
    EXPECT_EQ(utf8(read(call).value().message), "Bash");
}

TEST(HookEvent, OfAPermissionIsCutWithTheToolsName) {
    const QString longName(130, u'm');
    const QJsonObject input{{"command", "npm test"}};
    EXPECT_EQ(messageOf(longName, input), std::string(120, 'm') + "…");
    EXPECT_EQ(messageOf(longName.first(115), input), std::string(115, 'm') + ": npm…");
}

TEST(HookEvent, OfAPermissionNeedsATool) {
    for (const QJsonValue& tool : {QJsonValue(), QJsonValue(7), QJsonValue(""), QJsonValue(" \n"),
                                   QJsonValue(QJsonObject())}) {
        EXPECT_EQ(messageOf(tool, QJsonObject{{"command", "npm test"}}), "(none)");
    }
    QJsonObject call = permissionRequest();
    call.remove("tool_name");
    EXPECT_EQ(read(call), std::nullopt);
}

TEST(HookEvent, OfAQuestionOrPlanIsNoPermission) {
    const HookEvent asked{Kind::question, QString::fromStdString(session), {}};
    EXPECT_EQ(read(question()), asked);
    EXPECT_EQ(read(planApproval()), asked);
    EXPECT_EQ(messageOf("askuserquestion", QJsonObject()), "askuserquestion");
    EXPECT_EQ(messageOf("EnterPlanMode", QJsonObject()), "EnterPlanMode");
}

TEST(HookEvent, OfAReminderKeepsItsMessage) {
    EXPECT_EQ(read(notification({{"message", " Two\nlines\t"}})),
              (HookEvent{Kind::reminder, QString::fromStdString(session), "Two lines"}));
    EXPECT_EQ(utf8(read(notification({{"message", 7}})).value().message), "");
    QJsonObject silent = notification();
    silent.remove("message");
    EXPECT_EQ(utf8(read(silent).value().message), "");
}

TEST(HookEvent, NeedsASession) {
    for (const QJsonValue& id :
         {QJsonValue(), QJsonValue(7), QJsonValue(""), QJsonValue(QJsonObject())}) {
        EXPECT_EQ(read(permissionRequest({{"session_id", id}})), std::nullopt);
        EXPECT_EQ(read(event("Stop", {{"session_id", id}})), std::nullopt);
    }
    QJsonObject call = permissionRequest();
    call.remove("session_id");
    EXPECT_EQ(read(call), std::nullopt);
}

TEST(HookEvent, NeedsAKnownName) {
    for (const QJsonValue& name : {QJsonValue(), QJsonValue(7), QJsonValue(""), QJsonValue("stop"),
                                   QJsonValue("Stop "), QJsonValue("SubagentStop")}) {
        EXPECT_EQ(read(event("", {{"hook_event_name", name}})), std::nullopt);
    }
    QJsonObject call = event("Stop");
    EXPECT_NE(read(call), std::nullopt);
    call.remove("hook_event_name");
    EXPECT_EQ(read(call), std::nullopt);
}

TEST(HookEvent, TakesSessionsOfAnyNameUpToALength) {
    const std::string longest(longestSessionId, 'x');
    EXPECT_EQ(utf8(read(event("Stop", {}, longest)).value().sessionId), longest);
    EXPECT_EQ(read(event("Stop", {}, longest + "x")), std::nullopt);
    EXPECT_EQ(utf8(read(event("Stop", {}, "../a\nb")).value().sessionId), "../a\nb");
}

TEST(ShownMessage, IsOnOneLine) {
    EXPECT_EQ(shown("a\nb\r\nc\td"), "a b  c d");
    EXPECT_EQ(shown("a\x1B[31mb\x07\x7F"
                    "c"),
              "a [31mb  c");
    EXPECT_EQ(shown("a\u0085b\u2028c\u2029d"), "a b c d");
    EXPECT_EQ(shown("\n a \n"), "a");
    EXPECT_EQ(shown("\n\n"), "");
    EXPECT_EQ(utf8(shownMessage(QStringView(u"a\0b", 3))), "a b");
}

TEST(ShownMessage, IsInTheOrderInWhichItIsRead) {
    EXPECT_EQ(shown("rm \u202Ea\u202A\u202B\u202C\u202Db\u2066c\u2067\u2068\u2069"),
              "rm  a    b c");
    EXPECT_EQ(shown("\u0633\u0644\u0627\u0645\u200C\u200E x\u200D"),
              "\u0633\u0644\u0627\u0645\u200C\u200E x\u200D");
}

TEST(ShownMessage, IsCutBetweenCharacters) {
    const std::string family = "\U0001F469\u200D\U0001F467";
    std::string families;
    for (int i = 0; i < 120; ++i) {
        families += family;
    }
    EXPECT_EQ(shown(std::string(120, 'x').c_str()), std::string(120, 'x'));
    EXPECT_EQ(shown(std::string(121, 'x').c_str()), std::string(120, 'x') + "…");
    EXPECT_EQ(shown(families.c_str()), families);
    EXPECT_EQ(shown((families + 'x').c_str()), families + "…");
}

TEST(ShownMessage, IsShortHoweverLongItsCharacters) {
    QString marks = "a";
    marks.append(QString(1'000'000, QChar(0x0301)));
    EXPECT_EQ(shownMessage(marks), marks.first(2'000));
    // The limit falls into a pair.
    const QString pairs = 'a' + QString::fromUtf8("\U000E0101").repeated(5'000);
    EXPECT_EQ(shownMessage(pairs), pairs.first(1'999));
}

TEST(RequestContent, IsReadAsItWasWritten) {
    const HookEvent event{Kind::permission, QString::fromUtf8("a\"\\\n\u00E9"),
                          QString::fromUtf8("Bash: echo \"\\\U0001F600\"")};
    JsonReader reader;
    const std::string content = RequestFiles::content(event);
    const JsonObject object = reader.object(content).value();
    EXPECT_EQ(object.text("session_id"), event.sessionId);
    EXPECT_EQ(object.text("message"), event.message);
    EXPECT_EQ(RequestFiles::content({Kind::reminder, "s1", {}}), "{\"session_id\":\"s1\"}\n");
}

TEST(RequestName, IsTheSessionWhereItIsPlain) {
    for (const char* id : {"a", "0b7f7a3e-5c1d-4e8a-9f26-3d1c8a4e7b90", "A_b-9"}) {
        EXPECT_EQ(RequestFiles::nameOf(id), id);
    }
    EXPECT_EQ(RequestFiles::nameOf(QString(64, u'x')), std::string(64, 'x'));
}

TEST(RequestName, IsAHashOfAnyOtherSession) {
    std::set<std::string> names;
    const std::vector<QString> ids{"",
                                   ".",
                                   "..",
                                   "a/b",
                                   "../a",
                                   "a.json",
                                   "a b",
                                   "a\n",
                                   "a",
                                   "a_b",
                                   "\u00E9",
                                   QString(65, u'x'),
                                   QString(66, u'x'),
                                   QString(QChar(0)),
                                   QString(10'000, u'/')};
    for (const QString& id : ids) {
        const std::string name = RequestFiles::nameOf(id);
        EXPECT_THAT(name, testing::MatchesRegex("[A-Za-z0-9_-]{1,64}"));
        names.insert(name);
    }
    EXPECT_EQ(names.size(), ids.size());
    EXPECT_EQ(RequestFiles::nameOf(""),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

} // namespace
} // namespace sallowmere
