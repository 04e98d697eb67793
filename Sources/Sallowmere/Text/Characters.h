// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace sallowmere {

/// Decodes UTF-8; each invalid byte becomes U+FFFD. A leading byte-order mark is kept.
QString decodeUtf8(std::string_view bytes);

/// The first `count` user-perceived characters (grapheme clusters), or all of a shorter text.
/// The cost depends on these, not on the length of the text.
QStringView firstCharacters(QStringView text, qsizetype count);

/// The last `count` user-perceived characters, or all of a shorter text. The cost depends on the
/// length of the text.
QStringView lastCharacters(QStringView text, qsizetype count);

/// The first `count` characters with "…" appended when something was cut off.
QString elided(QStringView text, qsizetype count);

/// The text with every line feed turned into a blank.
QString onOneLine(QStringView text);

/// What stands before the first line feed.
QStringView firstLine(QStringView text);

} // namespace sallowmere
