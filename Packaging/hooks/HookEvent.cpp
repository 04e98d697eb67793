// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookEvent.h"

#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Text/StrangersText.h"
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace sallowmere {

namespace {

using Kind = HookEvent::Kind;

/// UTF-16 units. Any number of marks may make up one character.
constexpr qsizetype longestText = 2'000;

template <std::size_t count>
bool isOneOf(std::string_view name, const std::array<std::string_view, count>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// A reordered command would look like another one.
bool isShown(QChar c) {
    return c.category() != QChar::Other_Control && c.category() != QChar::Separator_Line
           && c.category() != QChar::Separator_Paragraph && !StrangersText::reorders(c);
}

/// Empty when the tool has no name.
QString permissionMessage(const JsonObject& call) {
    const QString tool = shownMessage(call.text("tool_name").value_or(QString()));
    if (tool.isEmpty()) {
        return {};
    }
    const QString argument = shownMessage(
        TranscriptParser::primaryArgument(call.object("tool_input").value_or(JsonObject())));
    return argument.isEmpty() ? tool
                              : shownMessage(QString(tool + QStringLiteral(": ") + argument));
}

std::optional<HookEvent> permissionRequest(const JsonObject& call, const QString& sessionId) {
    constexpr std::array<std::string_view, 2> told{"AskUserQuestion", "ExitPlanMode"};
    const std::string_view tool = call.string("tool_name").value_or("");
    if (isOneOf(tool, told)) {
        return HookEvent{Kind::question, sessionId, {}};
    }
    QString message = permissionMessage(call);
    if (message.isEmpty()) {
        return std::nullopt;
    }
    return HookEvent{Kind::permission, sessionId, std::move(message)};
}

std::optional<HookEvent> notification(const JsonObject& call, const QString& sessionId) {
    if (call.string("notification_type") != "permission_prompt") {
        return std::nullopt;
    }
    return HookEvent{Kind::reminder, sessionId,
                     shownMessage(call.text("message").value_or(QString()))};
}

} // namespace

std::optional<HookEvent> readHookEvent(std::string_view paddedJson) {
    constexpr std::array<std::string_view, 5> settling{"PostToolUse", "PostToolUseFailure",
                                                       "UserPromptSubmit", "Stop", "SessionEnd"};
    JsonReader reader;
    const JsonObject call = reader.paddedObject(paddedJson).value_or(JsonObject());
    const std::string_view sessionId = call.string("session_id").value_or("");
    if (sessionId.empty() || sessionId.size() > longestSessionId) {
        return std::nullopt;
    }
    const std::string_view event = call.string("hook_event_name").value_or("");
    if (event == "PermissionRequest") {
        return permissionRequest(call, decodeUtf8(sessionId));
    }
    if (event == "Notification") {
        return notification(call, decodeUtf8(sessionId));
    }
    if (isOneOf(event, settling)) {
        return HookEvent{Kind::settled, decodeUtf8(sessionId), {}};
    }
    return std::nullopt;
}

QString shownMessage(QStringView text) {
    QString line = text.first(std::min(text.size(), longestText)).toString();
    if (line.size() < text.size() && line.back().isHighSurrogate()) {
        line.chop(1);
    }
    std::replace_if(line.begin(), line.end(), std::not_fn(isShown), QChar(u' '));
    return elided(line.trimmed(), longestMessage);
}

} // namespace sallowmere
