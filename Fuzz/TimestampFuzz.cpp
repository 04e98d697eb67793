// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// Times as transcripts and settings give them: whatever parses lies near the years that four
// digits can name, and survives being written out and read again, in UTC and in any zone.
#include "Sallowmere/Transcripts/JSONLine.h"
#include "Support/Input.h"
#include "Support/Require.h"

#include <QDateTime>

#include <array>
#include <cstdio>
#include <ctime>

namespace sallowmere::fuzz {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

/// Year 0 is not Timestamp's earliest, but it is what four digits can say.
constexpr Timestamp firstMoment =
    std::chrono::sys_days{std::chrono::January / 1 / std::chrono::year{0}};
constexpr Timestamp endOfTime =
    std::chrono::sys_days{std::chrono::January / 1 / std::chrono::year{10'000}};

/// Written by the C library, which knows nothing of our calendar arithmetic.
std::string written(Timestamp moment, bool withFraction, const char* zone) {
    const auto whole = floor<seconds>(moment);
    const std::time_t time = whole.time_since_epoch().count();
    std::tm parts{};
    require(gmtime_r(&time, &parts) != nullptr, "the C library can write the time");
    std::array<char, 128> text{};
    int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d",
                               parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                               parts.tm_min, parts.tm_sec);
    std::string result(text.data(), static_cast<std::size_t>(length));
    if (withFraction) {
        const auto fraction = floor<milliseconds>(moment - whole).count();
        length = std::snprintf(text.data(), text.size(), ".%03d", static_cast<int>(fraction));
        result.append(text.data(), static_cast<std::size_t>(length));
    }
    return result + zone;
}

void requireSurvival(Timestamp moment) {
    if (moment < firstMoment + days(1) || moment >= endOfTime - days(1)) {
        return;
    }
    require(JSONLine::date(written(moment, true, "Z")) == moment, "UTC reads back the same");
    require(JSONLine::date(written(moment + minutes(150), true, "+02:30")) == moment,
            "a zone east reads back the same");
    require(JSONLine::date(written(moment - minutes(1'439), true, "-23:59")) == moment,
            "a zone west reads back the same");
    require(JSONLine::date(written(moment, false, "Z"), JSONLine::Fraction::refused)
                == floor<seconds>(moment),
            "whole seconds need no fraction");
}

/// Another reader that takes this form, and more; it has no year 0.
void requireAgreement(const std::string& text, Timestamp moment) {
    const QDateTime other = QDateTime::fromString(QString::fromStdString(text), Qt::ISODateWithMs);
    if (other.isValid()) {
        require(other.toMSecsSinceEpoch() == floor<milliseconds>(moment).time_since_epoch().count(),
                "another reader of the same form finds the same moment");
    }
}

void requireTimeRules(const std::string& text) {
    const std::optional<Timestamp> moment = JSONLine::date(text);
    const std::optional<Timestamp> whole = JSONLine::date(text, JSONLine::Fraction::refused);
    const bool hasFraction = text.find('.') != std::string::npos;
    require(!whole || !hasFraction, "a fraction can be refused");
    require(hasFraction || whole == moment, "without a fraction both ways agree");
    if (!moment) {
        return;
    }
    require(text.size() >= 20 && text.size() <= 29, "a time has 20 to 29 characters");
    require(*moment > firstMoment - days(1) && *moment < endOfTime + days(1),
            "a time lies within the years of four digits, a zone more or less");
    require(*moment == floor<milliseconds>(*moment), "a time has whole milliseconds");
    require(!JSONLine::date(text + 'Z') && !JSONLine::date(' ' + text),
            "nothing stands around a time");
    requireSurvival(*moment);
    requireAgreement(text, *moment);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireTimeRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
