// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Characters.h"

#include "Support/Texts.h"

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

const QString combiningAcute(QChar(0x0301));
const QString more = QStringLiteral("xyz");

TEST(DecodeUtf8, GivesAReplacementForEachInvalidByte) {
    struct Row {
        std::string_view bytes;
        QStringView text;
    };
    for (const Row& row : {
             Row{"na\xC3\xAFve \xF0\x9F\x98\x80", u"naïve \U0001F600"},
             Row{"", u""},
             Row{"a\xFF\xFE"
                 "b",
                 u"a\uFFFD\uFFFDb"},
             Row{"\x80", u"\uFFFD"},
             Row{"\xC3(", u"\uFFFD("},
             Row{"\xE2\x82x", u"\uFFFD\uFFFDx"},
             // Longer than needed, half of a surrogate pair, beyond the last code point.
             Row{"\xC0\xAF", u"\uFFFD\uFFFD"},
             Row{"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
             Row{"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
         }) {
        EXPECT_EQ(utf8(decodeUtf8(row.bytes)), utf8(row.text)) << row.bytes;
    }
}

TEST(DecodeUtf8, GivesReplacementsForACharacterCutAtTheEnd) {
    EXPECT_EQ(utf8(decodeUtf8("a\xC3")), utf8(u"a\uFFFD"));
    EXPECT_EQ(utf8(decodeUtf8("a\xE2\x82")), utf8(u"a\uFFFD\uFFFD"));
    EXPECT_EQ(utf8(decodeUtf8("a\xF0\x9F\x98")), utf8(u"a\uFFFD\uFFFD\uFFFD"));
}

TEST(DecodeUtf8, KeepsAByteOrderMark) {
    EXPECT_EQ(utf8(decodeUtf8("\xEF\xBB\xBFx")), "\xEF\xBB\xBFx");
}

TEST(FirstCharacters, CountsWhatTheUserPerceives) {
    struct Row {
        QStringView text;
        qsizetype count;
        QStringView first;
    };
    for (const Row& row : {
             Row{u"abcdef", 3, u"abc"},
             Row{u"abc", 3, u"abc"},
             Row{u"abc", 4, u"abc"},
             Row{u"", 3, u""},
             Row{u"abc", 0, u""},
             Row{u"naïve", 3, u"naï"},
             // Combining marks, a skin tone, a variation selector.
             Row{u"e\u0301e\u0301x", 2, u"e\u0301e\u0301"},
             Row{u"abe\u0301x", 3, u"abe\u0301"},
             Row{u"\U0001F44D\U0001F3FDx", 1, u"\U0001F44D\U0001F3FD"},
             Row{u"❤\uFE0Fx", 1, u"❤\uFE0F"},
             // A family of four, joined; two flags of two letters each; syllables of Hangul.
             Row{u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466x", 1,
                 u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"},
             Row{u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 1, u"\U0001F1E9\U0001F1EA"},
             Row{u"\u1100\u1161\u11A8\u1100", 1, u"\u1100\u1161\u11A8"},
             // A carriage return and its line feed are one; two line feeds are two.
             Row{u"a\r\nb", 2, u"a\r\n"},
             Row{u"\r\n\r\n", 1, u"\r\n"},
             Row{u"\n\n", 1, u"\n"},
             Row{u"\r\r", 1, u"\r"},
         }) {
        EXPECT_EQ(utf8(firstCharacters(row.text, row.count)), utf8(row.first))
            << utf8(row.text) << ' ' << row.count;
    }
}

TEST(FirstCharacters, FindsTheCutInTenMillion) {
    const QString text(10'000'000, u'é');
    EXPECT_EQ(firstCharacters(text, 140).size(), 140);
    EXPECT_EQ(firstCharacters(text, 9'999'999).size(), 9'999'999);
    EXPECT_EQ(firstCharacters(QString(10'000'000, u'x'), 48).size(), 48);
}

TEST(FirstCharacters, KeepsAGiantClusterWhole) {
    const QString giant = u'e' + combiningAcute.repeated(100'000);
    EXPECT_EQ(firstCharacters(giant, 1).size(), giant.size());
    EXPECT_EQ(firstCharacters(giant + more, 1).size(), giant.size());
    EXPECT_EQ(firstCharacters(giant + more, 3).size(), giant.size() + 2);
    EXPECT_EQ(firstCharacters(u'a' + giant + more, 2).size(), giant.size() + 1);
}

TEST(FirstCharacters, NeverPartsAClusterWhateverItsLength) {
    // A supplementary mark is a pair of units, which must not be judged by its first one.
    const QString mark = QString::fromUcs4(U"\U000E0100");
    for (qsizetype marks = 0; marks < 80; ++marks) {
        const QString cluster = u'e' + combiningAcute.repeated(marks) + mark;
        EXPECT_EQ(firstCharacters(cluster + more, 1).size(), cluster.size()) << marks;
    }
}

TEST(LastCharacters, CountsWhatTheUserPerceives) {
    struct Row {
        QStringView text;
        qsizetype count;
        QStringView last;
    };
    for (const Row& row : {
             Row{u"abcdef", 3, u"def"},
             Row{u"abc", 3, u"abc"},
             Row{u"abc", 4, u"abc"},
             Row{u"", 3, u""},
             Row{u"abc", 0, u""},
             Row{u"xe\u0301e\u0301", 2, u"e\u0301e\u0301"},
             Row{u"xe\u0301ab", 3, u"e\u0301ab"},
             Row{u"x\U0001F44D\U0001F3FD", 1, u"\U0001F44D\U0001F3FD"},
             Row{u"x❤\uFE0F", 1, u"❤\uFE0F"},
             Row{u"x\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466", 1,
                 u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"},
             // Flags pair up from the front: of five letters the last stands alone.
             Row{u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 1, u"\U0001F1EB\U0001F1F7"},
             Row{u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1EE", 2,
                 u"\U0001F1EB\U0001F1F7\U0001F1EE"},
             Row{u"\u1100\u1161\u11A8\u1100", 1, u"\u1100"},
             Row{u"a\r\nb", 2, u"\r\nb"},
             Row{u"\r\n\r\n", 1, u"\r\n"},
             Row{u"\n\n", 1, u"\n"},
             // A mark that follows nothing counts for itself.
             Row{u"\u0301ab", 3, u"\u0301ab"},
             Row{u"\u0301ab", 2, u"ab"},
         }) {
        EXPECT_EQ(utf8(lastCharacters(row.text, row.count)), utf8(row.last))
            << utf8(row.text) << ' ' << row.count;
    }
}

TEST(LastCharacters, KeepsAGiantClusterWhole) {
    const QString giant = u'e' + combiningAcute.repeated(100'000);
    EXPECT_EQ(lastCharacters(giant, 1).size(), giant.size());
    EXPECT_EQ(lastCharacters(more + giant, 1).size(), giant.size());
    EXPECT_EQ(lastCharacters(more + giant, 3).size(), giant.size() + 2);
}

TEST(LastCharacters, AreTheFirstOnesOfWhatIsLeft) {
    const QString text = QStringLiteral("a\u0301\U0001F44D\U0001F3FD\r\n\U0001F1E9\U0001F1EAz");
    for (qsizetype count = 0; count <= 5; ++count) {
        EXPECT_EQ(firstCharacters(text, 5 - count).toString()
                      + lastCharacters(text, count).toString(),
                  text)
            << count;
    }
}

TEST(Elided, AppendsAnEllipsisOnlyWhenSomethingWasCut) {
    EXPECT_EQ(utf8(elided(u"abcd", 4)), "abcd");
    EXPECT_EQ(utf8(elided(u"abcde", 4)), "abcd…");
    EXPECT_EQ(utf8(elided(u"", 4)), "");
    EXPECT_EQ(utf8(elided(u"e\u0301e\u0301", 2)), utf8(u"e\u0301e\u0301"));
}

TEST(OnOneLine, TurnsLineFeedsAloneIntoBlanks) {
    EXPECT_EQ(utf8(onOneLine(u"a\nb\n\nc")), "a b  c");
    EXPECT_EQ(utf8(onOneLine(u"a\r\nb\tc\u2028d")), utf8(u"a\r b\tc\u2028d"));
}

TEST(FirstLine, EndsAtALineFeedOnly) {
    EXPECT_EQ(utf8(firstLine(u"Hello\nworld")), "Hello");
    EXPECT_EQ(utf8(firstLine(u"Hello")), "Hello");
    EXPECT_EQ(utf8(firstLine(u"\nHello")), "");
    EXPECT_EQ(utf8(firstLine(u"a\r\nb")), "a\r");
    EXPECT_EQ(utf8(firstLine(u"a\rb\u2028c\u0085d\nf")), utf8(u"a\rb\u2028c\u0085d"));
}

} // namespace
} // namespace sallowmere
