// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// A setting as the manual's page tells of it.
struct SettingOfPage {
    std::string key;
    /// JSON; "none" when the setting has no value of its own.
    std::string defaultValue;
    /// What is taken, in words such as "1 to 50".
    std::string range;
};

/// The settings in the source of sallowmere(1), in order.
std::vector<SettingOfPage> settingsOfPage();

/// The bounds of a number; the upper one may be missing. Absent when it is about something else.
struct NumberRange {
    double least = 0;
    std::optional<double> most;
};
std::optional<NumberRange> numberRange(const SettingOfPage& setting);

/// What stands in quotes in the range, as JSON.
std::vector<std::string> quotedValues(const SettingOfPage& setting);

/// A value as JSON that is taken and is not the default.
std::string anotherValue(const SettingOfPage& setting);

} // namespace sallowmere
