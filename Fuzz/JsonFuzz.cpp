// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is JSON, or nearly. QJsonDocument is the second opinion: where both readers accept a
// text, they find the same values in it. They differ, on purpose or not, in this:
// - invalid UTF-8: replaced by ours, refused by the other; it is asked about the replaced text
// - members of one name: the first counts with ours, the last with the other; such texts are not
//   compared
// - raw control characters in strings, lone surrogates, a byte-order mark and numbers that
//   underflow or overflow in unusual spellings: the other takes some of these, ours none
// - U+FEFF as it is, unescaped: the other leaves it out where a string begins with it; such texts
//   are not compared
// - depth: each has a limit of its own
// So that a text is accepted by one of them says nothing about the other.
#include "Sallowmere/Text/Json.h"
#include "Support/Input.h"
#include "Support/Lines.h"
#include "Support/Require.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace sallowmere::fuzz {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Members of all objects of a valid text, each counted as often as it is written.
qsizetype membersWritten(std::string_view text) {
    qsizetype count = 0;
    bool inString = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (inString && text[at] == '\\') {
            ++at;
        } else if (text[at] == '"') {
            inString = !inString;
        } else if (!inString && text[at] == ':') {
            ++count;
        }
    }
    return count;
}

qsizetype membersFound(const QJsonValue& value) {
    qsizetype count = 0;
    if (value.isArray()) {
        for (const QJsonValue element : value.toArray()) {
            count += membersFound(element);
        }
    } else if (value.isObject()) {
        const QJsonObject object = value.toObject();
        count = object.size();
        for (const QJsonValue member : object) {
            count += membersFound(member);
        }
    }
    return count;
}

void requireSameMembers(const JsonObject& object, const QJsonObject& other);

void requireSameElements(const JsonObject& object, std::string_view key, const QJsonArray& other) {
    const std::optional<std::vector<JsonObject>> objects = dictArray(object, key);
    require(objects.has_value(), "an array is found");
    std::size_t position = 0;
    QStringList strings;
    for (const QJsonValue element : other) {
        if (element.isObject()) {
            require(position < objects->size(), "no object of an array is left out");
            requireSameMembers((*objects)[position++], element.toObject());
        } else if (element.isString()) {
            strings.append(element.toString());
        }
    }
    require(position == objects->size(), "the other elements of an array are left out");
    const std::optional<QStringList> texts = object.texts(key);
    require(texts.has_value() == (strings.size() == other.size()), "texts are nothing but strings");
    require(!texts || *texts == strings, "texts are the same");
}

void requireSameMember(const JsonObject& object, std::string_view key, const QJsonValue& other) {
    require(object.string(key).has_value() == other.isString(), "strings are strings");
    require(object.text(key).value_or(QString()) == other.toString(), "strings are the same");
    require(object.boolean(key).has_value() == other.isBool(), "truth is truth");
    require(object.isTrue(key) == other.toBool(), "truth is the same");
    require(object.number(key).has_value() == (other.isDouble() || other.isBool()),
            "numbers are numbers, truth too");
    require(!other.isDouble() || object.number(key) == other.toDouble(), "numbers are the same");
    require(object.object(key).has_value() == other.isObject(), "objects are objects");
    require(other.isArray() || !dictArray(object, key), "nothing else is an array");
    if (other.isObject()) {
        requireSameMembers(*object.object(key), other.toObject());
    } else if (other.isArray()) {
        requireSameElements(object, key, other.toArray());
    }
}

void requireSameMembers(const JsonObject& object, const QJsonObject& other) {
    for (auto member = other.begin(); member != other.end(); ++member) {
        const std::string key = member.key().toStdString();
        requireSameMember(object, key, member.value());
        const std::optional<std::string_view> bytes = object.string(key);
        require(!bytes || withBytesReplaced(*bytes) == *bytes, "strings are valid UTF-8");
    }
}

void requireReaderRules(const std::string& text) {
    JsonReader reader;
    const bool accepted = reader.object(text).has_value();
    std::string padded = text;
    padded.reserve(text.size() + JsonReader::padding);
    const std::optional<JsonObject> object = reader.paddedObject(padded);
    require(object.has_value() == accepted, "it does not matter where the room behind comes from");
    const std::string replaced = withBytesReplaced(text);
    JsonReader replacedReader;
    require(replacedReader.object(replaced).has_value() == accepted, "bad bytes count as replaced");
    if (!accepted || replaced.find(byteOrderMark) != std::string::npos) {
        return;
    }
    const QJsonDocument other = QJsonDocument::fromJson(QByteArray::fromStdString(replaced));
    if (!other.isObject() || membersFound(other.object()) != membersWritten(replaced)) {
        return;
    }
    requireSameMembers(*object, other.object());
    requireSameMembers(*reader.object(text), other.object());
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireReaderRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}
