// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/SettingsPage.h"

#include <fstream>
#include <regex>
#include <stdexcept>

namespace sallowmere {

namespace {

using Match = std::smatch;

/// A line after the setting's own that is a macro's one quoted argument.
SettingOfPage readSetting(const std::string& key, const std::string& line) {
    static const std::regex form(R"(\.Pq "([^;]+); (.+)\")");
    const std::string text = std::regex_replace(line, std::regex(R"(\\\(dq)"), "\"");
    Match match;
    if (!std::regex_match(text, match, form)) {
        throw std::runtime_error("the page tells neither default nor range of " + key);
    }
    return {key, match[1], match[2]};
}

} // namespace

std::vector<SettingOfPage> settingsOfPage() {
    static const std::regex item(R"(\.It Va (\w+))");
    std::ifstream page(SALLOWMERE_SOURCE_DIR "/Packaging/man/sallowmere.1");
    std::vector<SettingOfPage> settings;
    std::string line;
    while (std::getline(page, line)) {
        Match match;
        if (std::regex_match(line, match, item)) {
            const std::string key = match[1];
            std::getline(page, line);
            settings.push_back(readSetting(key, line));
        }
    }
    return settings;
}

std::optional<NumberRange> numberRange(const SettingOfPage& setting) {
    static const std::regex atLeast(R"(at least ([\d.]+))");
    static const std::regex between(R"(([\d.]+) to ([\d.]+))");
    Match match;
    if (std::regex_match(setting.range, match, atLeast)) {
        return NumberRange{std::stod(match[1]), {}};
    }
    if (std::regex_match(setting.range, match, between)) {
        return NumberRange{std::stod(match[1]), std::stod(match[2])};
    }
    return std::nullopt;
}

std::vector<std::string> quotedValues(const SettingOfPage& setting) {
    static const std::regex quoted(R"("[^"]*")");
    std::vector<std::string> values;
    const std::string& text = setting.range;
    for (std::sregex_iterator found(text.begin(), text.end(), quoted), end; found != end; ++found) {
        values.push_back(found->str());
    }
    return values;
}

std::string anotherValue(const SettingOfPage& setting) {
    if (const std::optional<NumberRange> range = numberRange(setting)) {
        const double other = range->least + 1;
        return std::to_string(other == std::stod(setting.defaultValue) ? other + 1 : other);
    }
    if (setting.range == "true or false") {
        return setting.defaultValue == "true" ? "false" : "true";
    }
    if (setting.range.starts_with("a list ")) {
        return R"(["another"])";
    }
    const std::vector<std::string> values = quotedValues(setting);
    return values.empty() ? "\"/another\"" : values.back();
}

} // namespace sallowmere
