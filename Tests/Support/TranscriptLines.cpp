// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/TranscriptLines.h"

#include "Sallowmere/Transcripts/TranscriptParser.h"

namespace sallowmere::transcript {

namespace {

std::string concatenated(std::initializer_list<std::string_view> pieces) {
    std::string result;
    for (const std::string_view piece : pieces) {
        result += piece;
    }
    return result;
}

} // namespace

std::string json(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (c == '\n') {
            result += "\\n";
        } else if (c == '\r') {
            result += "\\r";
        } else if (c == '\t') {
            result += "\\t";
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string time(std::string_view timestamp) {
    return concatenated({R"("timestamp":")", timestamp, R"(",)"});
}

std::string user(std::string_view content, std::string_view members) {
    return concatenated({R"({"parentUuid":null,)", members,
                         R"("type":"user","message":{"role":"user","content":)", content,
                         R"(},"userType":"external"})"});
}

std::string prompt(std::string_view text, std::string_view members) {
    return user(json(text), members);
}

std::string toolResult(std::string_view members) {
    return user(R"([{"tool_use_id":"toolu_1","type":"tool_result","content":"ok"}])", members);
}

std::string assistant(std::string_view blocks, std::string_view members) {
    return assistantMessage(
        concatenated({R"("model":"claude-opus-4-1","id":"msg_1","type":"message",)"
                      R"("role":"assistant","content":[)",
                      blocks, R"(],"stop_reason":"end_turn")"}),
        members);
}

std::string assistantMessage(std::string_view message, std::string_view members) {
    return concatenated({R"({"parentUuid":"7f","message":{)", message, "},", members,
                         R"("type":"assistant","userType":"external"})"});
}

std::string prose(std::string_view text) {
    return concatenated({R"({"type":"text","text":)", json(text), "}"});
}

std::string toolUse(std::string_view name, std::string_view input) {
    return concatenated(
        {R"({"type":"tool_use","id":"toolu_1","name":)", json(name), R"(,"input":)", input, "}"});
}

std::string question(std::string_view text) {
    return toolUse("AskUserQuestion",
                   concatenated({R"({"questions":[{"question":)", json(text),
                                 R"(,"options":[{"label":"Yes"},{"label":"No"}]}]})"}));
}

std::string plan(std::string_view text) {
    return toolUse("ExitPlanMode", concatenated({R"({"plan":)", json(text), "}"}));
}

std::string turnEnd(std::string_view members) {
    return concatenated({R"({"parentUuid":"7f","type":"system","subtype":"stop_hook_summary",)",
                         members, R"("hookCount":1})"});
}

std::string title(std::string_view text) {
    return concatenated({R"({"type":"ai-title","aiTitle":)", json(text), "}"});
}

ParsedTail folded(const std::vector<std::string>& lines) {
    const std::vector<std::string_view> views(lines.begin(), lines.end());
    return TranscriptParser::parseLines(views);
}

std::string file(const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines) {
        content += line + '\n';
    }
    return content;
}

} // namespace sallowmere::transcript
