// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Json.h"

#include "Sallowmere/Text/Characters.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace sallowmere {

namespace {

/// Fewer digits always fit 64 bits.
constexpr std::size_t longInteger = 19;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNumberPart(char c) {
    return isDigit(c) || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E';
}

/// Position just behind the string that begins at `start`, escapes heeded.
std::size_t endOfString(std::string_view text, std::size_t start) {
    std::size_t at = start + 1;
    while (at < text.size() && text[at] != '"') {
        at += text[at] == '\\' ? 2U : 1U;
    }
    return std::min(at + 1, text.size());
}

std::size_t endOfNumber(std::string_view text, std::size_t start) {
    std::size_t at = start;
    while (at < text.size() && isNumberPart(text[at])) {
        ++at;
    }
    return at;
}

bool isLongInteger(std::string_view number) {
    return number.size() >= longInteger && number.find_first_of(".eE") == std::string_view::npos;
}

/// A long integer, written so that it is read as a double instead of being refused. What is no
/// integer after all is refused all the same.
std::string asDouble(std::string_view integer) {
    const bool isNegative = integer.starts_with('-');
    const std::string_view digits = integer.substr(isNegative ? 1 : 0);
    const bool isInteger =
        !digits.starts_with('0') && std::all_of(digits.begin(), digits.end(), isDigit);
    double value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (!isInteger || read.ec != std::errc::result_out_of_range) {
        return std::string(integer) + "e0";
    }
    return isNegative ? "-1.7976931348623157e308" : "1.7976931348623157e308";
}

/// The text with its long integers as doubles; absent when there is none.
std::optional<std::string> withLongIntegersAsDoubles(std::string_view text) {
    std::string result;
    bool changed = false;
    std::size_t at = 0;
    while (at < text.size()) {
        const bool isNumber = isNumberPart(text[at]);
        std::size_t end = at + 1;
        if (text[at] == '"') {
            end = endOfString(text, at);
        } else if (isNumber) {
            end = endOfNumber(text, at);
        }
        const std::string_view token = text.substr(at, end - at);
        if (isNumber && isLongInteger(token)) {
            result += asDouble(token);
            changed = true;
        } else {
            result += token;
        }
        at = end;
    }
    return changed ? std::optional(std::move(result)) : std::nullopt;
}

} // namespace

template <typename Type>
std::optional<Type> JsonObject::member(std::string_view key) const {
    Type value;
    if (!object_ || object_->at_key(key).get(value) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string_view> JsonObject::string(std::string_view key) const {
    return member<std::string_view>(key);
}

std::optional<QString> JsonObject::text(std::string_view key) const {
    const std::optional<std::string_view> bytes = string(key);
    return bytes ? std::optional(decodeUtf8(*bytes)) : std::nullopt;
}

std::optional<bool> JsonObject::boolean(std::string_view key) const {
    return member<bool>(key);
}

std::optional<double> JsonObject::number(std::string_view key) const {
    if (const std::optional<bool> truth = boolean(key)) {
        return *truth ? 1 : 0;
    }
    return member<double>(key);
}

std::optional<JsonObject> JsonObject::object(std::string_view key) const {
    const auto value = member<simdjson::dom::object>(key);
    return value ? std::optional(JsonObject(*value)) : std::nullopt;
}

std::optional<QStringList> JsonObject::texts(std::string_view key) const {
    const auto elements = member<simdjson::dom::array>(key);
    if (!elements) {
        return std::nullopt;
    }
    QStringList result;
    for (const simdjson::dom::element element : *elements) {
        std::string_view bytes;
        if (element.get(bytes) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        result.append(decodeUtf8(bytes));
    }
    return result;
}

std::optional<std::vector<JsonObject>> dictArray(const JsonObject& object, std::string_view key) {
    const auto elements = object.member<simdjson::dom::array>(key);
    if (!elements) {
        return std::nullopt;
    }
    std::vector<JsonObject> result;
    for (const simdjson::dom::element element : *elements) {
        simdjson::dom::object entry;
        if (element.get(entry) == simdjson::SUCCESS) {
            result.emplace_back(entry);
        }
    }
    return result;
}

std::optional<JsonObject> JsonReader::object(std::string_view text) {
    padded_.reserve(text.size() + padding);
    padded_ = text;
    return paddedObject(padded_);
}

std::optional<JsonObject> JsonReader::paddedObject(std::string_view text) {
    simdjson::dom::element root;
    simdjson::error_code error = parse(text, root);
    if (error == simdjson::UTF8_ERROR) {
        text = repaired(decodeUtf8(text).toStdString());
        error = parse(text, root);
    }
    if (error != simdjson::SUCCESS) {
        if (std::optional<std::string> widened = withLongIntegersAsDoubles(text)) {
            error = parse(repaired(*std::move(widened)), root);
        }
    }
    simdjson::dom::object object;
    if (error != simdjson::SUCCESS || root.get(object) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return JsonObject(object);
}

std::string_view JsonReader::repaired(std::string text) {
    repaired_ = std::move(text);
    repaired_.reserve(repaired_.size() + padding);
    return repaired_;
}

simdjson::error_code JsonReader::parse(std::string_view text, simdjson::dom::element& root) {
    // Some versions of the library pass over a mark that others refuse.
    if (text.starts_with(byteOrderMark)) {
        return simdjson::TAPE_ERROR;
    }
    return parser_.parse(text.data(), text.size(), false).get(root);
}

} // namespace sallowmere
