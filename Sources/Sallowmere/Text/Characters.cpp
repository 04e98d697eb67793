// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Characters.h"

#include <QStringDecoder>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <optional>

namespace sallowmere {

namespace {

/// Neither part of a longer character nor, as a carriage return may be, joined to its neighbour.
bool standsAlone(QChar c) {
    return c.unicode() < 0x80 && c != u'\r';
}

/// At most the first `count` units of `text`, and one more where these would part a pair.
QStringView firstUnits(QStringView text, qsizetype count) {
    if (count >= text.size()) {
        return text;
    }
    return text.first(text[count - 1].isHighSurrogate() ? count + 1 : count);
}

/// Length of the first `count` clusters of `text`; absent when `text` ends before one more begins.
std::optional<qsizetype> lengthOfClusters(QStringView text, qsizetype count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (qsizetype found = 0; found < count; ++found) {
        if (finder.toNextBoundary() < 0) {
            return std::nullopt;
        }
    }
    return finder.position() < text.size() ? std::optional(finder.position()) : std::nullopt;
}

} // namespace

QString decodeUtf8(std::string_view bytes) {
    // Stateless, lest a character cut off at the end be kept back for a next call.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless
                                                    | QStringDecoder::Flag::ConvertInitialBom);
    return decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

QStringView firstCharacters(QStringView text, qsizetype count) {
    if (text.size() <= count) {
        return text;
    }
    const QStringView withNext = text.first(count + 1);
    if (std::all_of(withNext.begin(), withNext.end(), standsAlone)) {
        return text.first(count);
    }
    // Where a cluster ends depends on what precedes and on one character that follows, so a window
    // that holds the end and more decides it.
    for (qsizetype window = 8 * (count + 1);; window *= 4) {
        const QStringView part = firstUnits(text, window);
        if (const std::optional<qsizetype> length = lengthOfClusters(part, count)) {
            return text.first(*length);
        }
        if (part.size() == text.size()) {
            return text;
        }
    }
}

QStringView lastCharacters(QStringView text, qsizetype count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    finder.toEnd();
    for (qsizetype found = 0; found < count && finder.position() > 0; ++found) {
        finder.toPreviousBoundary();
    }
    return text.sliced(finder.position());
}

QString elided(QStringView text, qsizetype count) {
    const QStringView kept = firstCharacters(text, count);
    return kept.size() == text.size() ? text.toString() : kept.toString() + u'…';
}

QString onOneLine(QStringView text) {
    return text.toString().replace(u'\n', u' ');
}

QStringView firstLine(QStringView text) {
    const qsizetype end = text.indexOf(u'\n');
    return end < 0 ? text : text.first(end);
}

} // namespace sallowmere
