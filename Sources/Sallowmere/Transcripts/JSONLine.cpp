// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Transcripts/JSONLine.h"

#include <chrono>

namespace sallowmere::JSONLine {

namespace {

/// Takes one thing after the other off the front of a text; once something is missing, it is bad.
class Cursor {
public:
    explicit Cursor(std::string_view text) : rest_(text) {}

    bool isGood() const { return good_; }
    bool atEnd() const { return rest_.empty(); }
    char next() const { return rest_.empty() ? '\0' : rest_.front(); }

    void expect(char c) {
        good_ = good_ && next() == c;
        skip();
    }

    void skip() { rest_.remove_prefix(rest_.empty() ? 0 : 1); }

    /// Exactly `count` decimal digits.
    int digits(std::size_t count) {
        int value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            good_ = good_ && nextIsDigit();
            value = value * 10 + (next() - '0');
            skip();
        }
        return good_ ? value : 0;
    }

    bool nextIsDigit() const { return next() >= '0' && next() <= '9'; }

private:
    std::string_view rest_;
    bool good_ = true;
};

std::chrono::milliseconds readFraction(Cursor& cursor) {
    cursor.skip();
    std::chrono::milliseconds fraction(cursor.digits(1) * 100);
    for (const int unit : {10, 1}) {
        if (cursor.nextIsDigit()) {
            fraction += std::chrono::milliseconds(cursor.digits(1) * unit);
        }
    }
    return fraction;
}

/// Minutes east of UTC; absent when there is no well-formed zone.
std::optional<std::chrono::minutes> readZone(Cursor& cursor) {
    const char sign = cursor.next();
    cursor.skip();
    if (sign == 'Z') {
        return std::chrono::minutes(0);
    }
    const int hours = cursor.digits(2);
    cursor.expect(':');
    const int minutes = cursor.digits(2);
    if ((sign != '+' && sign != '-') || hours > 23 || minutes > 59) {
        return std::nullopt;
    }
    const std::chrono::minutes offset(hours * 60 + minutes);
    return sign == '+' ? offset : -offset;
}

} // namespace

std::optional<Timestamp> date(std::optional<std::string_view> value, Fraction fraction) {
    Cursor cursor(value.value_or(""));
    const std::chrono::year year(cursor.digits(4));
    cursor.expect('-');
    const std::chrono::month month(static_cast<unsigned>(cursor.digits(2)));
    cursor.expect('-');
    const std::chrono::day day(static_cast<unsigned>(cursor.digits(2)));
    cursor.expect('T');
    const int hour = cursor.digits(2);
    cursor.expect(':');
    const int minute = cursor.digits(2);
    cursor.expect(':');
    const int second = cursor.digits(2);
    std::chrono::milliseconds milliseconds(0);
    if (fraction == Fraction::allowed && cursor.next() == '.') {
        milliseconds = readFraction(cursor);
    }
    const std::optional<std::chrono::minutes> zone = readZone(cursor);
    const std::chrono::year_month_day calendarDay = year / month / day;
    if (!cursor.isGood() || !cursor.atEnd() || !zone || !calendarDay.ok() || hour > 23
        || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return std::chrono::sys_days(calendarDay) + std::chrono::hours(hour)
           + std::chrono::minutes(minute) + std::chrono::seconds(second) + milliseconds - *zone;
}

} // namespace sallowmere::JSONLine
