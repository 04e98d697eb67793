// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a settings file. Whatever stands in it, each setting stays within its bounds, and
// one that is missing or of another type stays as it was.
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Text/Json.h"
#include "Support/FakeFileSystem.h"
#include "Support/Input.h"
#include "Support/Require.h"

#include <array>
#include <cmath>

namespace sallowmere::fuzz {
namespace {

/// Not on this disk, lest settings of an earlier name be looked for and copied.
const std::string home = "/nonexistent/home";

Settings settingsFrom(std::string content) {
    FakeFileSystem files;
    files.addFile(home + "/.config/sallowmere/settings.json", std::move(content));
    return Settings::load(files, home);
}

struct NumberRule {
    const char* key;
    double Settings::*field;
    double least;
    double most;
};

constexpr double unbounded = HUGE_VAL;
constexpr std::array<NumberRule, 9> numberRules{{
    {"fiveHourLimit", &Settings::fiveHourLimit, 1, unbounded},
    {"weeklyLimit", &Settings::weeklyLimit, 1, unbounded},
    {"weeklyFableLimit", &Settings::weeklyFableLimit, 1, unbounded},
    {"weightInput", &Settings::weightInput, 0, unbounded},
    {"weightOutput", &Settings::weightOutput, 0, unbounded},
    {"weightCacheCreate", &Settings::weightCacheCreate, 0, unbounded},
    {"weightCacheRead", &Settings::weightCacheRead, 0, unbounded},
    {"showIdleHours", &Settings::showIdleHours, 0.1, 168},
    {"wingWidth", &Settings::wingWidth, 40, 240},
}};

void requireNumber(const NumberRule& rule, const JsonObject& file, const Settings& settings) {
    const double value = settings.*(rule.field);
    require(std::isfinite(value) && value >= rule.least && value <= rule.most,
            "a number stays within its bounds");
    const std::optional<double> written = file.number(rule.key);
    if (!written) {
        require(value == Settings().*(rule.field), "no number leaves the default");
    } else if (*written >= rule.least && *written <= rule.most) {
        require(value == *written, "a number within the bounds is taken");
    } else {
        require(value == (*written < rule.least ? rule.least : rule.most),
                "a number beyond a bound becomes the bound");
    }
}

void requireSessionCount(const JsonObject& file, const Settings& settings) {
    require(settings.maxSessions >= 1 && settings.maxSessions <= 50, "1 to 50 sessions are listed");
    const double count = std::trunc(file.number("maxSessions").value_or(Settings().maxSessions));
    require(count < 1 || count > 50 || settings.maxSessions == static_cast<int>(count),
            "a count of sessions loses its fraction");
}

void requireLists(const JsonObject& file, const Settings& settings) {
    require(!settings.terminalBundleIds.isEmpty(), "some terminal is known");
    const QStringList identifiers = file.texts("terminalBundleIds").value_or(QStringList());
    require(settings.terminalBundleIds
                == (identifiers.isEmpty() ? Settings().terminalBundleIds : identifiers),
            "identifiers replace the known ones");
    const QStringList terminals = file.texts("terminals").value_or(QStringList());
    require(settings.terminals.size() == terminals.size(), "every filter is taken");
    for (qsizetype i = 0; i < terminals.size(); ++i) {
        require(settings.terminals[i] == terminals[i].toLower(), "filters are lower-cased");
    }
}

void requireTexts(const JsonObject& file, const Settings& settings) {
    const QStringList modes{QStringLiteral("acceptEdits"),       QStringLiteral("auto"),
                            QStringLiteral("bypassPermissions"), QStringLiteral("manual"),
                            QStringLiteral("dontAsk"),           QStringLiteral("plan")};
    require(modes.contains(settings.resumePermissionMode), "the permission mode is an allowed one");
    require(!settings.claudeBinary || !settings.claudeBinary->empty(), "an executable has a path");
    require(settings.claudeBinary.value_or("") == file.string("claudeBinary").value_or(""),
            "the executable is taken as written");
    const std::string root(file.string("claudeRoot").value_or("~/.claude/projects"));
    const bool inHome = root == "~" || root.starts_with("~/");
    require(settings.claudeRoot == (inHome ? home + root.substr(1) : root),
            "the root may begin with the home directory");
    require(!settings.weeklyResetDate
                || (*settings.weeklyResetDate > distantPast - std::chrono::days(367)
                    && *settings.weeklyResetDate < distantFuture + std::chrono::days(2)),
            "the reset lies within the years of four digits");
}

void requireSettingsRules(const std::string& content) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    const Settings settings = settingsFrom(content);
    std::string_view text = content;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    } else {
        require(settingsFrom(std::string(byteOrderMark) + content) == settings,
                "a byte-order mark changes nothing");
    }
    JsonReader reader;
    const std::optional<JsonObject> object = reader.object(text);
    require(object || settings == Settings::defaults(home), "no object leaves all defaults");
    const JsonObject file = object.value_or(JsonObject());
    for (const NumberRule& rule : numberRules) {
        requireNumber(rule, file, settings);
    }
    requireSessionCount(file, settings);
    requireLists(file, settings);
    requireTexts(file, settings);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireSettingsRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
