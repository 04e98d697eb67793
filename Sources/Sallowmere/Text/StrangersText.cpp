// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/StrangersText.h"

#include <algorithm>
#include <utility>

namespace sallowmere::StrangersText {

namespace {

constexpr char16_t pictures = u'\u2400';
constexpr char16_t pictureOfDelete = u'\u2421';

bool isBetween(QChar c, char16_t first, char16_t last) {
    return c >= QChar(first) && c <= QChar(last);
}

QChar onTerminal(QChar c) {
    if (isBetween(c, 0x00, 0x1F)) {
        return QChar(pictures + c.unicode());
    }
    if (c == QChar(0x7F)) {
        return QChar(pictureOfDelete);
    }
    const bool breaksLine = isBetween(c, 0x2028, 0x2029);
    return isBetween(c, 0x80, 0x9F) || breaksLine || reorders(c) ? QChar::ReplacementCharacter : c;
}

QString cut(QString text, qsizetype most) {
    if (text.size() <= most) {
        return text;
    }
    text.truncate(text[most - 1].isHighSurrogate() ? most - 1 : most);
    return text + u'…';
}

} // namespace

bool reorders(QChar c) {
    return isBetween(c, 0x202A, 0x202E) || isBetween(c, 0x2066, 0x2069);
}

QString forPanel(QString text, qsizetype most) {
    text = cut(std::move(text), most);
    if (std::any_of(text.cbegin(), text.cend(), reorders)) {
        std::replace_if(text.begin(), text.end(), reorders, QChar(QChar::ReplacementCharacter));
    }
    return text;
}

QString forTerminal(QString line) {
    std::transform(line.cbegin(), line.cend(), line.begin(), onTerminal);
    return line;
}

} // namespace sallowmere::StrangersText
