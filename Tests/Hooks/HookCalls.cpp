// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/HookCalls.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace sallowmere::hookCalls {

namespace {

/// The keys of `base` and those of `more`, which replace them.
QJsonObject with(QJsonObject base, const QJsonObject& more) {
    for (auto key = more.begin(); key != more.end(); ++key) {
        base.insert(key.key(), key.value());
    }
    return base;
}

QJsonObject toolEvent(const std::string& name, const QString& tool, const QJsonObject& input,
                      const std::string& sessionId) {
    return event(name,
                 {{"permission_mode", "default"},
                  {"effort", QJsonObject{{"level", "high"}}},
                  {"tool_name", tool},
                  {"tool_input", input}},
                 sessionId);
}

} // namespace

std::vector<std::string> eventsOfBoth() {
    return {"PreToolUse",       "PostToolUse",  "PostToolUseFailure", "Notification",
            "UserPromptSubmit", "SessionStart", "SessionEnd",         "Stop",
            "SubagentStart",    "SubagentStop", "PreCompact",         "PermissionRequest"};
}

std::vector<std::string> eventsOfTheNewer() {
    return {"StopFailure", "PostCompact", "TaskCompleted", "Setup", "ConfigChange"};
}

QJsonObject event(const std::string& name, const QJsonObject& keys, const std::string& sessionId) {
    return with({{"session_id", QString::fromStdString(sessionId)},
                 {"transcript_path", "/home/user/.claude/projects/-home-user-shop/"
                                         + QString::fromStdString(sessionId) + ".jsonl"},
                 {"cwd", "/home/user/shop"},
                 {"prompt_id", "7d5e3c52-90aa-4c7b-8e0f-6a1f2b9c4d13"},
                 {"hook_event_name", QString::fromStdString(name)}},
                keys);
}

QJsonObject permissionRequest(const QJsonObject& keys, const std::string& sessionId) {
    const QJsonObject rule{{"toolName", "Bash"}, {"ruleContent", "npm test *"}};
    const QJsonObject suggestion{{"type", "addRules"},
                                 {"rules", QJsonArray{rule}},
                                 {"behavior", "allow"},
                                 {"destination", "localSettings"}};
    const QJsonObject input{{"command", "npm test"}, {"description", "Run the tests"}};
    QJsonObject call = toolEvent("PermissionRequest", "Bash", input, sessionId);
    call.insert("permission_suggestions", QJsonArray{suggestion});
    return with(call, keys);
}

QJsonObject question(const std::string& sessionId) {
    const QJsonArray options{QJsonObject{{"label", "Blue"}, {"description", "Like the sea"}},
                             QJsonObject{{"label", "Red"}, {"description", "Like a brick"}}};
    const QJsonObject asked{{"question", "Which colour?"},
                            {"header", "Colour"},
                            {"options", options},
                            {"multiSelect", false}};
    return toolEvent("PermissionRequest", "AskUserQuestion", {{"questions", QJsonArray{asked}}},
                     sessionId);
}

QJsonObject planApproval(const std::string& sessionId) {
    return toolEvent("PermissionRequest", "ExitPlanMode", {{"plan", "# Plan\n\n1. Paint it"}},
                     sessionId);
}

QJsonObject notification(const QJsonObject& keys, const std::string& sessionId) {
    return event(
        "Notification",
        with({{"message", "A permission is needed"}, {"notification_type", "permission_prompt"}},
             keys),
        sessionId);
}

QJsonObject toolUsed(const std::string& sessionId) {
    QJsonObject call = toolEvent("PostToolUse", "Bash", {{"command", "npm test"}}, sessionId);
    call.insert("tool_response", QJsonObject{{"stdout", "ok"}, {"stderr", ""}});
    call.insert("tool_use_id", "toolu_01AbCdEf");
    return call;
}

std::string text(const QJsonObject& call) {
    return QJsonDocument(call).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace sallowmere::hookCalls
