// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <simdjson.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// A JSON object as a lenient reader wants it: a member that is missing or of another type is
/// absent. Valid until the `JsonReader` that gave it reads again. The default one has no members.
class JsonObject {
public:
    JsonObject() = default;
    explicit JsonObject(simdjson::dom::object object) : object_(object) {}

    /// UTF-8 bytes of a string; as short-lived as the object.
    std::optional<std::string_view> string(std::string_view key) const;
    std::optional<QString> text(std::string_view key) const;
    std::optional<bool> boolean(std::string_view key) const;
    bool isTrue(std::string_view key) const { return boolean(key).value_or(false); }
    /// A number of any kind; true and false count 1 and 0.
    std::optional<double> number(std::string_view key) const;
    std::optional<JsonObject> object(std::string_view key) const;
    /// An array of nothing but strings.
    std::optional<QStringList> texts(std::string_view key) const;

private:
    friend std::optional<std::vector<JsonObject>> dictArray(const JsonObject& object,
                                                            std::string_view key);

    template <typename Type>
    std::optional<Type> member(std::string_view key) const;

    std::optional<simdjson::dom::object> object_;
};

/// The objects among the elements of an array, in order; other elements are dropped. Absent when
/// the member is missing or no array.
std::optional<std::vector<JsonObject>> dictArray(const JsonObject& object, std::string_view key);

/// Some programs begin UTF-8 with it.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Reads JSON strictly: no trailing comma, leading zero, raw control character, lone surrogate,
/// byte-order mark, nor a fraction or power beyond a double's range. Two leniencies: integers may
/// have any number of digits (beyond a double's range they count as its end), and every byte that
/// is not valid UTF-8 becomes U+FFFD before reading.
/// Objects nested more than 1,024 deep are refused.
///
/// Holds the parser's buffers, up to a dozen times the longest text, for reuse. One thread at a
/// time.
class JsonReader {
public:
    /// So many bytes behind a text handed to `paddedObject` must be readable.
    static constexpr std::size_t padding = simdjson::SIMDJSON_PADDING;

    /// The text's object; absent when it does not parse or is another kind of value.
    std::optional<JsonObject> object(std::string_view text);

    /// The same without copying the text first.
    std::optional<JsonObject> paddedObject(std::string_view text);

private:
    simdjson::error_code parse(std::string_view text, simdjson::dom::element& root);
    /// Keeps a changed text, with room behind it, for as long as what is read from it.
    std::string_view repaired(std::string text);

    simdjson::dom::parser parser_;
    /// The text with room behind it, and the text made acceptable.
    std::string padded_;
    std::string repaired_;
};

} // namespace sallowmere
