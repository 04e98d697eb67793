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

bool acts(QChar c) {
    return isBetween(c, 0x00, 0x1F) || isBetween(c, 0x7F, 0x9F) || isBetween(c, 0x2028, 0x2029)
           || reorders(c);
}

bool actsInPanel(QChar c) {
    return acts(c) && c != u'\n' && c != u'\t';
}

/// Of a character that acts.
QChar mark(QChar c) {
    if (c < QChar(0x20)) {
        return QChar(pictures + c.unicode());
    }
    return c == QChar(0x7F) ? QChar(pictureOfDelete) : QChar(QChar::ReplacementCharacter);
}

template <typename Predicate>
QString marked(QString text, Predicate predicate) {
    // Most texts have none, and stay shared.
    if (std::any_of(text.cbegin(), text.cend(), predicate)) {
        std::transform(text.cbegin(), text.cend(), text.begin(),
                       [&](QChar c) { return predicate(c) ? mark(c) : c; });
    }
    return text;
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
    return marked(cut(std::move(text), most), actsInPanel);
}

QString forTerminal(QString line) {
    return marked(std::move(line), acts);
}

} // namespace sallowmere::StrangersText
