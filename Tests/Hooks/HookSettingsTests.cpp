// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/HookCalls.h"
#include "Hooks/HookHome.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <filesystem>
#include <set>

namespace sallowmere {
namespace {

using testing::IsSubsetOf;
using testing::UnorderedElementsAreArray;

QJsonObject settings() {
    QFile file(SALLOWMERE_HOOK_SETTINGS);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

std::vector<std::string> eventsOf(const QJsonObject& settings) {
    std::vector<std::string> names;
    for (const QString& name : settings["hooks"].toObject().keys()) {
        names.push_back(name.toStdString());
    }
    return names;
}

TEST(HookSettings, HoldHooksAlone) {
    EXPECT_EQ(settings().keys(), QStringList("hooks"));
    EXPECT_FALSE(settings()["hooks"].toObject().isEmpty());
}

TEST(HookSettings, NameEventsThatBothClientsKnow) {
    // An unknown name would make the older one refuse all its settings.
    EXPECT_THAT(eventsOf(settings()), IsSubsetOf(hookCalls::eventsOfBoth()));
}

TEST(HookSettings, CallTheHookForEveryOneOfTheirEvents) {
    const std::set<QString> ofTools{"PermissionRequest", "PostToolUse", "PostToolUseFailure"};
    const QJsonObject hook{{"type", "command"}, {"command", "sallowmere-notify"}, {"timeout", 5}};
    const QJsonObject hooks = settings()["hooks"].toObject();
    for (auto event = hooks.begin(); event != hooks.end(); ++event) {
        QJsonObject expected{{"hooks", QJsonArray{hook}}};
        if (ofTools.contains(event.key())) {
            expected.insert("matcher", "*");
        }
        EXPECT_EQ(event.value(), QJsonValue(QJsonArray{expected})) << event.key().toStdString();
    }
}

class HookOfSettings : public HookHome {};

TEST_F(HookOfSettings, DoesSomethingForEachOfTheirEventsAndForNoOther) {
    std::vector<std::string> effective;
    for (const std::string& name : hookCalls::eventsOfBoth()) {
        write("mine.json", R"({"session_id":")" + hookCalls::session + "\"}");
        if (name == "Notification") {
            // It adds what is not there yet.
            std::filesystem::remove(in("mine.json"));
        }
        const std::vector<std::string> before = names();
        call(hookCalls::event(name,
                              {{"tool_name", "Bash"}, {"notification_type", "permission_prompt"}}));
        if (names() != before) {
            effective.push_back(name);
        }
        std::filesystem::remove_all(directory());
    }
    EXPECT_THAT(eventsOf(settings()), UnorderedElementsAreArray(effective));
}

TEST(HookProgram, IsCalledAsItIsInstalled) {
    EXPECT_THAT(SALLOWMERE_NOTIFY, testing::EndsWith("/sallowmere-notify"));
}

} // namespace
} // namespace sallowmere
