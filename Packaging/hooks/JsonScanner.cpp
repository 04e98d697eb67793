// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "JsonScanner.h"

#include "Sallowmere/Text/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace sallowmere::JsonScanner {

namespace {

constexpr std::string_view digits = "0123456789";

char byteAt(std::string_view text, std::size_t at) {
    return at < text.size() ? text[at] : '\0';
}

/// Bytes that a character has by its first one.
std::size_t lengthOfCharacter(char first) {
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0xC0U) {
        return 1;
    }
    return byte < 0xE0U ? 2 : byte < 0xF0U ? 3 : 4;
}

/// The position behind a string for who only wants to know what lies outside of strings.
std::size_t behindString(std::string_view text, std::size_t at) {
    ++at;
    while (at < text.size() && text[at] != '"') {
        at += text[at] == '\\' ? 2U : 1U;
    }
    return std::min(at + 1, text.size());
}

std::size_t endOfComment(std::string_view text, std::size_t at) {
    if (text[at + 1] == '/') {
        return std::min(text.find_first_of("\r\n", at), text.size());
    }
    const std::size_t close = text.find("*/", at + 2);
    if (close == std::string_view::npos) {
        throw Complaint{at, "this comment does not end"};
    }
    return close + 2;
}

/// The UTF-16 unit of an escape `\uXXXX`; absent when there is none.
std::optional<unsigned> unitAt(std::string_view text, std::size_t at) {
    unsigned unit = 0;
    const std::string_view escape = text.substr(std::min(at, text.size()), 6);
    if (escape.size() < 6 || !escape.starts_with("\\u")) {
        return std::nullopt;
    }
    const auto read = std::from_chars(escape.data() + 2, escape.data() + 6, unit, 16);
    return read.ptr == escape.data() + 6 ? std::optional(unit) : std::nullopt;
}

std::size_t endOfUnicodeEscape(std::string_view text, std::size_t at) {
    const std::optional<unsigned> unit = unitAt(text, at);
    if (!unit) {
        throw Complaint{at, "four hexadecimal digits are missing"};
    }
    if (*unit < 0xD800U || *unit > 0xDFFFU) {
        return at + 6;
    }
    const unsigned low = unitAt(text, at + 6).value_or(0);
    if (*unit > 0xDBFFU || low < 0xDC00U || low > 0xDFFFU) {
        throw Complaint{at, "this is half a character"};
    }
    return at + 12;
}

std::size_t endOfEscape(std::string_view text, std::size_t at) {
    constexpr std::string_view escapes = "\"\\/bfnrt";
    const char letter = byteAt(text, at + 1);
    if (letter == 'u') {
        return endOfUnicodeEscape(text, at);
    }
    if (letter == '\0' || escapes.find(letter) == std::string_view::npos) {
        throw Complaint{at, "no such escape is known"};
    }
    return at + 2;
}

std::size_t endOfDigits(std::string_view text, std::size_t at) {
    const std::size_t end = std::min(text.find_first_not_of(digits, at), text.size());
    if (end == at) {
        throw Complaint{at, "a digit is missing"};
    }
    return end;
}

bool isBeyondRange(std::string_view number) {
    double value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    return read.ec == std::errc::result_out_of_range
           && number.find_first_of(".eE") != std::string_view::npos;
}

std::size_t endOfNumber(std::string_view text, std::size_t begin) {
    std::size_t at = begin + (text[begin] == '-' ? 1U : 0U);
    if (byteAt(text, at) == '0' && digits.find(byteAt(text, at + 1)) != std::string_view::npos) {
        throw Complaint{at, "a number does not begin with a zero"};
    }
    at = endOfDigits(text, at);
    if (byteAt(text, at) == '.') {
        at = endOfDigits(text, at + 1);
    }
    if (byteAt(text, at) == 'e' || byteAt(text, at) == 'E') {
        const char sign = byteAt(text, at + 1);
        at = endOfDigits(text, at + (sign == '+' || sign == '-' ? 2U : 1U));
    }
    if (isBeyondRange(text.substr(begin, at - begin))) {
        throw Complaint{begin, "this number is too large or too small"};
    }
    return at;
}

} // namespace

void requireUtf8(std::string_view text) {
    if (simdjson::validate_utf8(text.data(), text.size())) {
        return;
    }
    std::size_t at = 0;
    while (at < text.size()) {
        const std::string_view character = text.substr(at, lengthOfCharacter(text[at]));
        if (!simdjson::validate_utf8(character.data(), character.size())) {
            break;
        }
        at += character.size();
    }
    throw Complaint{at, "this is not UTF-8"};
}

std::vector<Range> comments(std::string_view text) {
    std::vector<Range> found;
    std::size_t at = 0;
    while (at < text.size()) {
        const char following = byteAt(text, at + 1);
        if (text[at] == '"') {
            at = behindString(text, at);
        } else if (text[at] == '/' && (following == '/' || following == '*')) {
            found.push_back({at, endOfComment(text, at)});
            at = found.back().end;
        } else {
            ++at;
        }
    }
    return found;
}

std::size_t endOfString(std::string_view text, std::size_t begin) {
    std::size_t at = begin + 1;
    while (at < text.size() && text[at] != '"') {
        if (static_cast<unsigned char>(text[at]) < 0x20U) {
            throw Complaint{at, "a control character stands in a string"};
        }
        at = text[at] == '\\' ? endOfEscape(text, at) : at + 1;
    }
    if (at >= text.size()) {
        throw Complaint{begin, "this string does not end"};
    }
    return at + 1;
}

std::size_t endOfWord(std::string_view text, std::size_t at) {
    for (const std::string_view word : {"true", "false", "null"}) {
        if (text.substr(at, word.size()) == word) {
            return at + word.size();
        }
    }
    const char first = byteAt(text, at);
    if (first != '-' && (first == '\0' || digits.find(first) == std::string_view::npos)) {
        throw Complaint{at, at < text.size() ? "a value is missing" : "the text ends too early"};
    }
    return endOfNumber(text, at);
}

} // namespace sallowmere::JsonScanner
