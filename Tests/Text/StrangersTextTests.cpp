// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/StrangersText.h"

#include "Support/Texts.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using StrangersText::forPanel;
using StrangersText::forTerminal;

const QString reordering = QStringLiteral("\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069");

TEST(StrangersText, IsShownAsItIsWhenNothingInItActs) {
    for (const char* text : {"", "plain", "<b>x</b>\\n", "שלום עולם", "العربية 123", "修复登录表单",
                             "👩‍👩‍👧 e\u0301", "a\u200Eb\u200Fc\u061Cd", "½ €"}) {
        EXPECT_EQ(utf8(forPanel(QString::fromUtf8(text))), text);
        EXPECT_EQ(utf8(forTerminal(QString::fromUtf8(text))), text);
    }
}

TEST(StrangersText, MovesNothingInThePanel) {
    EXPECT_EQ(utf8(forPanel("a" + reordering + "b")), "a���������b");
    EXPECT_EQ(utf8(forPanel("a\nb\tc")), "a\nb\tc");
    EXPECT_EQ(utf8(forPanel(QStringLiteral("\x1B[1m\r\b\x7F\u009B\u2028"))), "␛[1m␍␈␡��");
}

TEST(StrangersText, MovesNothingOnATerminal) {
    EXPECT_EQ(utf8(forTerminal("a" + reordering + "b")), "a���������b");
}

TEST(StrangersText, CommandsNoTerminal) {
    EXPECT_EQ(utf8(forTerminal("\x1B]0;title\x07\x1B[31mred\r\nfake: line\t\b\x7F")),
              "␛]0;title␇␛[31mred␍␊fake: line␉␈␡");
    EXPECT_EQ(utf8(forTerminal(QString(QChar(u'\0')))), "␀");
    EXPECT_EQ(utf8(forTerminal(QStringLiteral("\u0080\u009B31m\u009D\u009F\u2028\u2029"))),
              "��31m����");
}

TEST(StrangersText, HasAPictureForEachControlCharacter) {
    for (char16_t c = 0; c < 0x20; ++c) {
        EXPECT_EQ(forTerminal(QString(QChar(c))), QString(QChar(char16_t(0x2400 + c)))) << int(c);
    }
}

TEST(StrangersText, IsNoLongerInThePanelThanAnybodyReads) {
    const QString most(StrangersText::mostInPanel, u'x');
    EXPECT_EQ(forPanel(most), most);
    EXPECT_EQ(forPanel(most + u'y'), most + u'…');
    EXPECT_EQ(utf8(forPanel("abcdef", 3)), "abc…");
}

TEST(StrangersText, IsCutBetweenCharacters) {
    EXPECT_EQ(utf8(forPanel(QStringLiteral("a😀b"), 2)), "a…");
    EXPECT_EQ(utf8(forPanel(QStringLiteral("a😀b"), 3)), "a😀…");
    EXPECT_EQ(utf8(forPanel(QStringLiteral("a😀"), 3)), "a😀");
}

} // namespace
} // namespace sallowmere
