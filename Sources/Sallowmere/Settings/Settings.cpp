// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Settings/Settings.h"

#include "Sallowmere/Settings/PrivateFiles.h"
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Transcripts/JSONLine.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string_view>
#include <system_error>

namespace sallowmere {

namespace {

constexpr std::string_view settingsPath = ".config/sallowmere/settings.json";
constexpr std::string_view legacyPath = ".config/velm-askrow/settings.json";

constexpr std::string_view settingsTemplate = R"({
  "usageAPIEnabled": true,
  "fiveHourLimit": 50000000,
  "weeklyLimit": 350000000,
  "weightInput": 1.0,
  "weightOutput": 5.0,
  "weightCacheCreate": 1.25,
  "weightCacheRead": 0.1,
  "showIdleHours": 12,
  "maxSessions": 8,
  "wingWidth": 96
})";

/// Also when what it links to is not there at present.
bool isTaken(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

/// Makes a file for the user alone, whole or not at all: an empty one, as a full disk leaves it,
/// would be taken for the user's own ever after. `write` tells whether it could.
void makeFile(const std::string& path, const std::function<bool(const std::string& path)>& write) {
    PrivateFiles::createDirectories(std::filesystem::path(path).parent_path());
    if (write(path)) {
        PrivateFiles::makePrivate(path);
    } else {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
}

/// Takes a number between the bounds; a value of another type changes nothing.
void overlayNumber(const JsonObject& file, std::string_view key, double least, double most,
                   double& field) {
    if (const std::optional<double> value = file.number(key)) {
        field = std::clamp(*value, least, most);
    }
}

void overlayBoolean(const JsonObject& file, std::string_view key, bool& field) {
    field = file.boolean(key).value_or(field);
}

void overlayNumbers(const JsonObject& file, Settings& settings) {
    constexpr double unbounded = std::numeric_limits<double>::max();
    overlayNumber(file, "fiveHourLimit", 1, unbounded, settings.fiveHourLimit);
    overlayNumber(file, "weeklyLimit", 1, unbounded, settings.weeklyLimit);
    overlayNumber(file, "weeklyFableLimit", 1, unbounded, settings.weeklyFableLimit);
    overlayNumber(file, "weightInput", 0, unbounded, settings.weightInput);
    overlayNumber(file, "weightOutput", 0, unbounded, settings.weightOutput);
    overlayNumber(file, "weightCacheCreate", 0, unbounded, settings.weightCacheCreate);
    overlayNumber(file, "weightCacheRead", 0, unbounded, settings.weightCacheRead);
    overlayNumber(file, "showIdleHours", 0.1, 168, settings.showIdleHours);
    overlayNumber(file, "wingWidth", 40, 240, settings.wingWidth);
    // Bounded before it becomes an integer: a number far beyond one would have no value.
    double sessions = settings.maxSessions;
    overlayNumber(file, "maxSessions", 1, 50, sessions);
    settings.maxSessions = static_cast<int>(sessions);
}

void overlayLists(const JsonObject& file, Settings& settings) {
    const std::optional<QStringList> identifiers = file.texts("terminalBundleIds");
    if (identifiers && !identifiers->isEmpty()) {
        settings.terminalBundleIds = *identifiers;
    }
    if (const std::optional<QStringList> terminals = file.texts("terminals")) {
        settings.terminals.clear();
        for (const QString& terminal : *terminals) {
            settings.terminals.append(terminal.toLower());
        }
    }
}

void overlayTexts(const JsonObject& file, const std::string& home, Settings& settings) {
    if (const auto root = file.string("claudeRoot")) {
        settings.claudeRoot = expandTilde(*root, home);
    }
    if (const auto binary = file.string("claudeBinary"); binary && !binary->empty()) {
        settings.claudeBinary = *binary;
    }
    if (const auto reset = file.string("weeklyResetISO")) {
        settings.weeklyResetDate = JSONLine::date(reset, JSONLine::Fraction::refused);
    }
    if (const std::optional<QString> mode = file.text("resumePermissionMode")) {
        static const QStringList modes{
            QStringLiteral("acceptEdits"),       QStringLiteral("auto"),
            QStringLiteral("bypassPermissions"), QStringLiteral("manual"),
            QStringLiteral("dontAsk"),           QStringLiteral("plan")};
        if (modes.contains(*mode)) {
            settings.resumePermissionMode = *mode;
        } else if (*mode == u"default") {
            settings.resumePermissionMode = QStringLiteral("manual");
        }
    }
}

} // namespace

Settings Settings::defaults(const std::string& home) {
    Settings settings;
    settings.claudeRoot = joinPath(home, ".claude/projects");
    return settings;
}

Settings Settings::load(const FileSystem& files, const std::string& home) {
    migrateLegacySettingsIfNeeded(home);
    Settings settings = defaults(home);
    const std::optional<std::string> bytes = readWholeFile(files, joinPath(home, settingsPath));
    if (!bytes) {
        return settings;
    }
    std::string_view text = *bytes;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    JsonReader reader;
    const std::optional<JsonObject> file = reader.object(text);
    if (!file) {
        return settings;
    }
    overlayBoolean(*file, "usageAPIEnabled", settings.usageAPIEnabled);
    overlayBoolean(*file, "soundsEnabled", settings.soundsEnabled);
    overlayBoolean(*file, "keystrokeAnswers", settings.keystrokeAnswers);
    overlayNumbers(*file, settings);
    overlayLists(*file, settings);
    overlayTexts(*file, home, settings);
    return settings;
}

void Settings::writeTemplateIfMissing(const std::string& home) {
    const std::string path = joinPath(home, settingsPath);
    if (isTaken(path)) {
        return;
    }
    makeFile(path, [](const std::string& file) {
        std::ofstream stream(file, std::ios::binary);
        stream << settingsTemplate;
        stream.close();
        return stream.good();
    });
}

void Settings::migrateLegacySettingsIfNeeded(const std::string& home) {
    const std::string path = joinPath(home, settingsPath);
    const std::string legacy = joinPath(home, legacyPath);
    std::error_code ignored;
    if (isTaken(path) || !std::filesystem::exists(legacy, ignored)) {
        return;
    }
    makeFile(path, [&legacy](const std::string& file) {
        std::error_code error;
        return std::filesystem::copy_file(legacy, file, error);
    });
}

} // namespace sallowmere
