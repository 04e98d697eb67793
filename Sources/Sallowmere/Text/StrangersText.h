// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sallowmere {

/// Text that anybody may have written, made fit to be shown. It comes out as it is but for
/// characters that are not seen themselves and change what else is seen: control characters, line
/// and paragraph separators and reordering characters. Marks stand for these: the pictures of those
/// that have one (U+2400 and following), else U+FFFD.
namespace StrangersText {

/// UTF-16 units of a text that the panel shows: several times what the largest of its places holds.
/// What is longer would be laid out in vain, for seconds.
inline constexpr qsizetype mostInPanel = 2'000;

/// Whether a character makes those behind it stand elsewhere than they were written: an embedding,
/// an override or an isolate. Letters of scripts that are read from right to left do not.
bool reorders(QChar c);

/// For a place in the panel, where an answer's text must not read as another one. Line feeds and
/// tabs stay. A text beyond `most` UTF-16 units is cut and ends in "…".
QString forPanel(QString text, qsizetype most = mostInPanel);

/// For a line on a terminal, which would take control characters for commands. Line feeds and tabs
/// do not stay.
QString forTerminal(QString line);

} // namespace StrangersText

} // namespace sallowmere
