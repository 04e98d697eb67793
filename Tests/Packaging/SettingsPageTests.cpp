// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/SettingsPage.h"

#include "Sallowmere/Settings/Settings.h"
#include "Support/FakeFileSystem.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>
#include <utility>

namespace sallowmere {
namespace {

using testing::UnorderedElementsAre;

/// Exists in memory only.
const std::string home = "/nowhere/home";

/// The settings that a file with this one member gives.
Settings with(const std::string& key, const std::string& value) {
    FakeFileSystem files;
    files.addFile(home + "/.config/sallowmere/settings.json", "{\"" + key + "\":" + value + '}');
    return Settings::load(files, home);
}

/// All that can be set. Does not compile any more when something else can be, too.
auto fieldsOf(const Settings& settings) {
    const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s] = settings;
    return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s);
}

using Fields = decltype(fieldsOf(std::declval<const Settings&>()));

/// The numbers of the fields in which two differ.
template <std::size_t... indices>
std::set<std::size_t> differences(const Fields& one, const Fields& other,
                                  std::index_sequence<indices...> /*all*/) {
    std::set<std::size_t> different;
    const auto note = [&different](std::size_t index, bool isEqual) {
        if (!isEqual) {
            different.insert(index);
        }
    };
    (note(indices, std::get<indices>(one) == std::get<indices>(other)), ...);
    return different;
}

constexpr std::make_index_sequence<std::tuple_size_v<Fields>> allFields{};

TEST(SettingsPage, TellsEverySettingOnceAndNoOther) {
    const Settings defaults = Settings::defaults(home);
    std::set<std::size_t> told;
    for (const SettingOfPage& setting : settingsOfPage()) {
        const Settings changed = with(setting.key, anotherValue(setting));
        const std::set<std::size_t> fields =
            differences(fieldsOf(changed), fieldsOf(defaults), allFields);
        ASSERT_EQ(fields.size(), 1U) << setting.key;
        EXPECT_TRUE(told.insert(*fields.begin()).second) << setting.key;
    }
    EXPECT_EQ(told.size(), allFields.size());
}

TEST(SettingsPage, TellsTheDefaults) {
    std::vector<std::string> without;
    for (const SettingOfPage& setting : settingsOfPage()) {
        if (setting.defaultValue == "none") {
            without.push_back(setting.key);
            continue;
        }
        EXPECT_EQ(with(setting.key, setting.defaultValue), Settings::defaults(home)) << setting.key;
        // A value of another type would change nothing either.
        const auto typeOf = [](const std::string& json) {
            return json.find_first_of("0123456789") == 0 ? '0' : json == "false" ? 't' : json.at(0);
        };
        EXPECT_EQ(typeOf(setting.defaultValue), typeOf(anotherValue(setting))) << setting.key;
    }
    const Settings defaults = Settings::defaults(home);
    EXPECT_FALSE(defaults.weeklyResetDate || defaults.claudeBinary);
    EXPECT_THAT(without, UnorderedElementsAre("weeklyResetISO", "claudeBinary"));
}

TEST(SettingsPage, TellsTheRangesOfNumbers) {
    int numbers = 0;
    for (const SettingOfPage& setting : settingsOfPage()) {
        const std::optional<NumberRange> range = numberRange(setting);
        if (!range) {
            continue;
        }
        ++numbers;
        const auto at = [&](double value) { return with(setting.key, std::to_string(value)); };
        EXPECT_EQ(at(range->least - 1), at(range->least)) << setting.key;
        EXPECT_NE(at(range->least + 1), at(range->least)) << setting.key;
        if (range->most) {
            EXPECT_EQ(at(*range->most + 1), at(*range->most)) << setting.key;
            EXPECT_NE(at(*range->most - 1), at(*range->most)) << setting.key;
        } else {
            EXPECT_NE(at(1e15), at(1e14)) << setting.key;
        }
    }
    EXPECT_EQ(numbers, 10);
}

TEST(SettingsPage, TellsThePermissionModes) {
    for (const SettingOfPage& setting : settingsOfPage()) {
        if (setting.key != "resumePermissionMode") {
            continue;
        }
        EXPECT_THAT(quotedValues(setting), testing::Contains(setting.defaultValue));
        for (const std::string& mode : quotedValues(setting)) {
            const QString taken = with(setting.key, mode).resumePermissionMode;
            EXPECT_EQ('"' + taken.toStdString() + '"', mode);
        }
    }
}

} // namespace
} // namespace sallowmere
