// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/SettingsShapes.h"

#include <utility>

namespace sallowmere {

namespace {

using Named = std::pair<std::string, std::string>;

/// With LF and tabs, which become the line break and the indentation of the shape. `@` becomes a
/// comment that may take the rest of its line, and `#` one that may not.
const std::vector<Named>& contents() {
    static const std::vector<Named> contents{
        {"nothing", "{}"},
        {"blanks", "{\n}"},
        {"a comment", "{@\n}"},
        {"other keys", "{\n\t\"model\": \"opus\",@\n\t\"env\": {\n\t\t\"A\": \"[{,\"\n\t}@\n}"},
        {"odd values", "{#\n\t\"a\\\"b\": [1, -2.5e3,# null],\n\t\"ü\": \"\\u00fc\\\\\"\n\t@\n}"},
        {"empty hooks", "{\n\t\"hooks\": {}@\n}"},
        {"blank hooks", "{\n\t\"hooks\": {\n\t},\n\t\"z\": true\n}"},
        {"hooks first", "{\n\t\"hooks\": {},\n\t\"z\": true\n}"},
        {"hooks with a comment", "{\n\t\"hooks\": {@\n\t}\n}"},
        {"other events",
         "{\n\t\"hooks\": {@\n\t\t\"PreToolUse\": [@\n\t\t\t{ \"hooks\": [] }@\n\t\t]@\n\t}\n}"},
        {"empty events", "{\n\t\"hooks\": {\n\t\t\"Stop\": [],\n\t\t\"SessionEnd\": [\n\t\t],@\n"
                         "\t\t\"Notification\": [#]\n\t}\n}"},
        {"the user's hooks",
         "{\n\t\"hooks\": {\n\t\t\"Stop\": [\n\t\t\t{ \"hooks\": [{ \"type\": \"command\","
         " \"command\": \"beep\" }] }@\n\t\t],\n\t\t\"PermissionRequest\": [#{ \"matcher\": "
         "\"Bash\", \"hooks\": [] },# {}]\n\t}@\n}"},
        {"on few lines", "{\"hooks\": {\"Stop\": [{\"hooks\": []}],\n\t\"a\": 1}, \"b\": []}"},
        {"one line", "{\"model\":\"opus\",# \"hooks\":{\"Stop\":[],\"PreToolUse\":[ ]}}"},
        {"one line with blanks", "{ \"model\": \"opus\", \"hooks\": { \"Stop\": [ {} ] } }"},
        {"brackets on lines of their own",
         "{\n\t\"hooks\":\n\t{\n\t\t\"Stop\":\n\t\t[\n\t\t\t{\n\t\t\t}\n\t\t]\n\t}\n}"},
        {"commas in front", "{\n\t\"a\": 1\n\t,@\n\t\"hooks\": {\n\t\t\"Stop\": [\n\t\t\t{}\n"
                            "\t\t\t,@\n\t\t\t{}\n\t\t]\n\t}\n}"}};
    return contents;
}

std::string replaced(const std::string& text, char character, const std::string& by) {
    std::string result;
    for (const char c : text) {
        result += c == character ? by : std::string(1, c);
    }
    return result;
}

const std::vector<Named> indents{{"two", "  "}, {"four", "    "}, {"tab", "\t"}, {"none", ""}};
const std::vector<Named> lineBreaks{{"LF", "\n"}, {"CRLF", "\r\n"}};
const std::vector<Named> comments{
    {"", ""}, {"line comments", " // \"{[, /* "}, {"block comments", " /* \"}],\n// */"}};
const std::vector<Named> ends{{"", ""}, {"line break", "\n"}, {"blanks", "\n\n \t"}};
const std::vector<Named> marks{{"", ""}, {"mark", "\xEF\xBB\xBF"}};

SettingsShape shapeOf(const Named& content, const Named& comment, const Named& indent,
                      const Named& lineBreak) {
    const std::string inner = comment.second.empty() ? "" : " /* \"]} // */ ";
    std::string text = replaced(replaced(content.second, '@', comment.second), '#', inner);
    text = replaced(replaced(text, '\t', indent.second), '\n', lineBreak.second);
    return {content.first + ", " + comment.first + ", " + indent.first + ", " + lineBreak.first,
            text};
}

} // namespace

std::vector<SettingsShape> settingsShapes() {
    std::vector<SettingsShape> shapes;
    for (const Named& content : contents()) {
        for (const Named& comment : comments) {
            for (const Named& indent : indents) {
                for (const Named& lineBreak : lineBreaks) {
                    const SettingsShape shape = shapeOf(content, comment, indent, lineBreak);
                    for (const Named& end : ends) {
                        for (const Named& mark : marks) {
                            shapes.push_back({shape.name + ", " + end.first + ", " + mark.first,
                                              mark.second + shape.text
                                                  + replaced(end.second, '\n', lineBreak.second)});
                        }
                    }
                }
            }
        }
    }
    return shapes;
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace sallowmere
