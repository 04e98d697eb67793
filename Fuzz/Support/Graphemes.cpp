// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/Graphemes.h"

#include <QTextBoundaryFinder>

namespace sallowmere::fuzz {

qsizetype endOfGraphemes(QStringView text, qsizetype count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (qsizetype found = 0; found < count; ++found) {
        if (finder.toNextBoundary() < 0) {
            return text.size();
        }
    }
    return finder.position();
}

qsizetype graphemes(QStringView text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0) {
        ++count;
    }
    return count;
}

} // namespace sallowmere::fuzz
