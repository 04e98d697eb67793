// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileSystem.h"
#include "Platform/Timestamp.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>

namespace sallowmere {

/// What the user can tune, read once at start from `~/.config/sallowmere/settings.json` and passed
/// by value from then on; an edit takes effect at the next start.
///
/// The operations below never fail visibly: whatever cannot be read, parsed or written leaves the
/// defaults in place, value by value. `home` is the user's home directory, without a trailing
/// slash.
struct Settings {
    /// Whether the service's own usage figures are fetched.
    bool usageAPIEnabled = true;
    /// Allowances in weighted tokens, at least 1.
    double fiveHourLimit = 50'000'000;
    double weeklyLimit = 350'000'000;
    /// The weekly allowance of the separately counted "Fable" model family.
    double weeklyFableLimit = 180'000'000;
    /// What one token of each kind weighs, at least 0.
    double weightInput = 1.0;
    double weightOutput = 5.0;
    double weightCacheCreate = 1.25;
    double weightCacheRead = 0.1;
    /// Identifiers of terminal applications, in order of preference; never empty.
    QStringList terminalBundleIds{
        QStringLiteral("com.googlecode.iterm2"), QStringLiteral("com.mitchellh.ghostty"),
        QStringLiteral("dev.warp.Warp-Stable"),  QStringLiteral("com.github.wez.wezterm"),
        QStringLiteral("net.kovidgoyal.kitty"),  QStringLiteral("com.apple.Terminal"),
    };
    /// A known moment at which the weekly window resets.
    std::optional<Timestamp> weeklyResetDate;
    /// Lower-cased terminal names; when there are any, only sessions in these are kept.
    QStringList terminals;
    /// Whether status changes play sounds.
    bool soundsEnabled = true;
    /// Whether answers are typed into the terminal.
    bool keystrokeAnswers = true;
    /// Hours, 0.1 to 168: sessions whose transcript is older are not listed.
    double showIdleHours = 12;
    /// 1 to 50.
    int maxSessions = 8;
    /// Width of each wing of the collapsed bar in points, 40 to 240.
    double wingWidth = 96;
    /// Directory of the assistant's transcripts; `defaults` sets it to `~/.claude/projects`.
    std::string claudeRoot;
    /// The assistant's executable as the user wrote it; absent to search the usual places.
    std::optional<std::string> claudeBinary;
    /// Permission mode of headless prompts.
    QString resumePermissionMode = QStringLiteral("acceptEdits");

    bool operator==(const Settings&) const = default;

    /// What holds before the file is read.
    static Settings defaults(const std::string& home);

    /// Copies the settings of the legacy location when there are no new ones yet, then overlays
    /// the file on the defaults.
    static Settings load(const FileSystem& files, const std::string& home);

    /// Writes a file with the ten most used keys at their defaults unless there is a file.
    static void writeTemplateIfMissing(const std::string& home);

    /// Part of `load`; the legacy file stays where it is. A normal start writes the template
    /// first and therefore never copies.
    static void migrateLegacySettingsIfNeeded(const std::string& home);
};

} // namespace sallowmere
