// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

namespace sallowmere::fuzz {

/// The end of the first `count` grapheme clusters, found by looking at the text as a whole.
qsizetype endOfGraphemes(QStringView text, qsizetype count);

/// How many grapheme clusters there are.
qsizetype graphemes(QStringView text);

} // namespace sallowmere::fuzz
