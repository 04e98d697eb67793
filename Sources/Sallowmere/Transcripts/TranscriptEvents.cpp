// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Transcripts/JSONLine.h"
#include "Sallowmere/Transcripts/TranscriptParser.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace sallowmere::TranscriptParser {

namespace {

constexpr qsizetype promptCharacters = 140;
constexpr qsizetype proseCharacters = 120;
constexpr qsizetype argumentCharacters = 48;
/// A message from another session names its sender this early.
constexpr qsizetype teammateCharacters = 160;

bool isFromAnotherSession(QStringView content) {
    return content.startsWith(u"Another Claude session sent a message")
           || firstCharacters(content, teammateCharacters).contains(u"<teammate-message");
}

/// The texts among a message's blocks; empty when there is none or a tool's result is among them.
QString joinedTexts(const JsonObject& message) {
    const auto blocks = dictArray(message, "content").value_or(std::vector<JsonObject>());
    QStringList texts;
    for (const JsonObject& block : blocks) {
        const std::string_view type = block.string("type").value_or("");
        if (type == "tool_result") {
            return {};
        }
        const auto text = type == "text" ? block.text("text") : std::nullopt;
        if (text) {
            texts.append(*text);
        }
    }
    return texts.join(u' ');
}

bool isTyped(QStringView prompt) {
    return !prompt.isEmpty() && !prompt.startsWith(u'<')
           && !prompt.startsWith(u"[Request interrupted by user");
}

void noteTodos(const JsonObject& input, ParsedTail& tail) {
    const auto todos = dictArray(input, "todos").value_or(std::vector<JsonObject>());
    if (todos.empty()) {
        return;
    }
    const auto completed = std::count_if(todos.begin(), todos.end(), [](const JsonObject& todo) {
        return todo.string("status") == "completed";
    });
    tail.todo = TodoProgress{completed, static_cast<std::int64_t>(todos.size())};
}

void noteMeaning(const QString& name, const JsonObject& input, ParsedTail& tail) {
    if (name == u"AskUserQuestion") {
        if (const std::optional<AskQuestion> ask = parseAsk(input)) {
            tail.ask = ask;
            tail.askAnswered = false;
        }
    } else if (name == u"ExitPlanMode") {
        const std::optional<QString> plan = input.text("plan");
        if (plan && !plan->isEmpty()) {
            tail.plan = plan;
            tail.planAnswered = false;
        }
    } else if (name == u"TodoWrite") {
        noteTodos(input, tail);
    }
}

void handleBlock(const JsonObject& block, const QString& eventId, std::optional<Timestamp> time,
                 ParsedTail& tail, std::vector<LogEvent>& events) {
    const std::string_view type = block.string("type").value_or("");
    if (type == "text") {
        const QString text = block.text("text").value_or(QString()).trimmed();
        if (!text.isEmpty()) {
            const QStringView label = firstCharacters(firstLine(text), proseCharacters);
            events.push_back({eventId, LogEvent::Kind::text, label.toString(), std::nullopt, time});
        }
    } else if (type == "tool_use") {
        if (const std::optional<QString> name = block.text("name")) {
            handleToolUse(*name, block.object("input").value_or(JsonObject()), eventId, time, tail,
                          events);
        }
    }
}

/// What stands before the argument of an activity line, for the tools we know.
std::optional<QString> activityPrefix(const QString& tool) {
    static const QHash<QString, QString> prefixes{
        {QStringLiteral("Read"), QStringLiteral("Reading ")},
        {QStringLiteral("Edit"), QStringLiteral("Writing ")},
        {QStringLiteral("Write"), QStringLiteral("Writing ")},
        {QStringLiteral("NotebookEdit"), QStringLiteral("Writing ")},
        {QStringLiteral("Bash"), QStringLiteral("Running ")},
        {QStringLiteral("Grep"), QStringLiteral("Searching ")},
        {QStringLiteral("Glob"), QStringLiteral("Searching ")},
        {QStringLiteral("Task"), QStringLiteral("Delegating: ")},
        {QStringLiteral("Agent"), QStringLiteral("Delegating: ")},
        {QStringLiteral("WebFetch"), QStringLiteral("Fetching ")},
        {QStringLiteral("WebSearch"), QStringLiteral("Fetching ")},
        {QStringLiteral("Skill"), QStringLiteral("Skill: ")},
    };
    const auto found = prefixes.find(tool);
    return found == prefixes.end() ? std::nullopt : std::optional(*found);
}

} // namespace

void handleUser(const JsonObject& object, ParsedTail& tail) {
    if (object.isTrue("isSidechain")) {
        return;
    }
    if (const std::optional<QString> cwd = object.text("cwd")) {
        tail.cwd = cwd;
    }
    if (const std::optional<QString> branch = object.text("gitBranch")) {
        tail.gitBranch = branch;
    }
    const JsonObject message = object.object("message").value_or(JsonObject());
    const std::optional<QString> content = message.text("content");
    if (content && isFromAnotherSession(*content)) {
        return;
    }
    // Any other line is a reaction of the user: a tool's result too, for that is how the answer
    // to a question comes back.
    tail.askAnswered = tail.askAnswered || tail.ask.has_value();
    tail.planAnswered = tail.planAnswered || tail.plan.has_value();
    if (object.isTrue("isMeta") || object.isTrue("isCompactSummary")
        || object.isTrue("isVisibleInTranscriptOnly")) {
        return;
    }
    const QString prompt = (content ? *content : joinedTexts(message)).trimmed();
    if (isTyped(prompt)) {
        tail.lastPrompt = elided(onOneLine(prompt), promptCharacters);
    }
}

void handleAssistant(const JsonObject& object, ParsedTail& tail, std::vector<LogEvent>& events,
                     std::size_t lineIndex) {
    const std::optional<JsonObject> message = object.object("message");
    if (object.isTrue("isSidechain") || !message) {
        return;
    }
    const std::optional<QString> model = message->text("model");
    if (model && !model->startsWith(u'<')) {
        tail.model = model;
    }
    const std::optional<Timestamp> time = JSONLine::date(object.string("timestamp"));
    const auto blocks = dictArray(*message, "content").value_or(std::vector<JsonObject>());
    for (std::size_t position = 0; position < blocks.size(); ++position) {
        const QString eventId = QStringLiteral("%1.%2").arg(lineIndex).arg(position);
        handleBlock(blocks[position], eventId, time, tail, events);
    }
}

void handleToolUse(const QString& name, const JsonObject& input, const QString& eventId,
                   std::optional<Timestamp> timestamp, ParsedTail& tail,
                   std::vector<LogEvent>& events) {
    noteMeaning(name, input, tail);
    const QString argument = primaryArgument(input);
    const QString label = argument.isEmpty() ? name : name + u'(' + argument + u')';
    events.push_back({eventId, LogEvent::Kind::tool, label, std::nullopt, timestamp});
}

std::optional<AskQuestion> parseAsk(const JsonObject& input) {
    const auto questions = dictArray(input, "questions").value_or(std::vector<JsonObject>());
    if (questions.empty()) {
        return std::nullopt;
    }
    const std::optional<QString> question = questions.front().text("question");
    if (!question) {
        return std::nullopt;
    }
    AskQuestion ask{*question, {}};
    const auto options =
        dictArray(questions.front(), "options").value_or(std::vector<JsonObject>());
    for (const JsonObject& option : options) {
        if (const std::optional<QString> label = option.text("label")) {
            ask.options.append(*label);
        }
    }
    return ask;
}

QString primaryArgument(const JsonObject& input) {
    constexpr std::array<std::string_view, 10> keys{"file_path", "path",  "pattern",     "command",
                                                    "query",     "skill", "description", "url",
                                                    "prompt",    "name"};
    for (const std::string_view key : keys) {
        const std::optional<QString> value = input.text(key);
        if (!value || value->isEmpty()) {
            continue;
        }
        const bool isPath = key == "file_path" || key == "path";
        const QStringView argument = isPath ? lastPathComponent(QStringView(*value)) : *value;
        // One character more tells that something is cut off; the rest may be megabytes.
        return elided(onOneLine(firstCharacters(argument, argumentCharacters + 1)),
                      argumentCharacters);
    }
    return {};
}

QString activityLine(const LogEvent& event) {
    const qsizetype parenthesis = event.label.indexOf(u'(');
    if (event.kind == LogEvent::Kind::text || parenthesis < 0) {
        return event.label;
    }
    const QString tool = event.label.first(parenthesis);
    QString argument = event.label.sliced(parenthesis + 1);
    if (argument.endsWith(u')')) {
        argument.chop(1);
    }
    if (tool == u"TodoWrite") {
        return QStringLiteral("Updating plan");
    }
    if (tool == u"AskUserQuestion") {
        return QStringLiteral("Asking you a question");
    }
    if (const std::optional<QString> prefix = activityPrefix(tool)) {
        return *prefix + argument;
    }
    return argument.isEmpty() ? tool : tool + QStringLiteral(": ") + argument;
}

} // namespace sallowmere::TranscriptParser
