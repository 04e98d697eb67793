// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/PlanMarkdown.h"

#include "Views/ViewTest.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

namespace sallowmere {
namespace {

using namespace Samples;
using testing::HasSubstr;
using testing::Not;

/// A plan as a view takes it over.
class Plan : public testing::Test {
protected:
    void show(const char* markdown) {
        document.setHtml(PlanMarkdown::styled(QString::fromUtf8(markdown)));
    }

    std::string text() const { return utf8(document.toPlainText()); }

    QTextCharFormat formatOf(const char* word) const {
        const QTextCursor found = document.find(QString::fromUtf8(word));
        EXPECT_FALSE(found.isNull()) << word;
        return found.charFormat();
    }

    QTextBlock blockOf(const char* word) const {
        return document.find(QString::fromUtf8(word)).block();
    }

    QTextDocument document;
};

TEST_F(Plan, HasHeadingsLittleLargerThanItsText) {
    show("# First\n\ntext\n\n## Second\n\n### Third\n\n###### Sixth");
    EXPECT_EQ(text(), "First\ntext\nSecond\nThird\nSixth");
    double before = 14 * 0.75;
    for (const char* heading : {"First", "Second", "Third", "Sixth"}) {
        const QTextCharFormat format = formatOf(heading);
        EXPECT_EQ(format.fontWeight(), QFont::DemiBold) << heading;
        EXPECT_LE(format.fontPointSize(), before) << heading;
        EXPECT_GE(format.fontPointSize(), 12 * 0.75) << heading;
        EXPECT_EQ(format.intProperty(QTextFormat::FontSizeAdjustment), 0) << heading;
        before = format.fontPointSize();
    }
    EXPECT_GT(blockOf("Second").blockFormat().topMargin(), 0);
    EXPECT_EQ(blockOf("First").blockFormat().topMargin(), 0);
}

TEST_F(Plan, HasDenseLists) {
    show("- one\n  - within\n- two\n\n1. first\n2. second");
    for (const char* item : {"one", "within", "two", "first", "second"}) {
        ASSERT_NE(blockOf(item).textList(), nullptr) << item;
        EXPECT_LE(blockOf(item).blockFormat().bottomMargin(), 4) << item;
        EXPECT_EQ(blockOf(item).textList()->format().indent(), 0) << item;
    }
    EXPECT_EQ(blockOf("one").blockFormat().leftMargin(), 16);
    EXPECT_EQ(blockOf("within").blockFormat().leftMargin(), 32);
    EXPECT_EQ(blockOf("first").textList()->format().style(), QTextListFormat::ListDecimal);
}

TEST_F(Plan, HasEmphasis) {
    show("plain **strong** *slanted* ~~gone~~");
    EXPECT_EQ(formatOf("strong").fontWeight(), QFont::Bold);
    EXPECT_TRUE(formatOf("slanted").fontItalic());
    EXPECT_TRUE(formatOf("gone").fontStrikeOut());
    EXPECT_FALSE(formatOf("plain").fontItalic());
}

TEST_F(Plan, HasCodeOnALighterGround) {
    show("call `inner()` now\n\n```cpp\nint block = 1;\n  indented();\n```\n\n    old style");
    for (const char* code : {"inner", "int block", "indented", "old style"}) {
        EXPECT_THAT(utf8(formatOf(code).fontFamilies().toStringList().join(' ')),
                    HasSubstr("monospace"))
            << code;
        EXPECT_EQ(formatOf(code).background().color(), QColor(0x26, 0x26, 0x26)) << code;
    }
    EXPECT_EQ(formatOf("call").background().style(), Qt::NoBrush);
    EXPECT_THAT(text(), HasSubstr("  indented();"));
    EXPECT_FALSE(blockOf("int block").blockFormat().nonBreakableLines());
}

TEST_F(Plan, HasTablesWithQuietLines) {
    show("| step | days |\n| --- | --- |\n| write | 1 |");
    QTextTable* table = nullptr;
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        table = qobject_cast<QTextTable*>(frame);
    }
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rows(), 2);
    EXPECT_EQ(table->columns(), 2);
    EXPECT_TRUE(table->format().borderCollapse());
    EXPECT_LE(table->format().border(), 1);
    EXPECT_EQ(table->format().borderBrush().color(), QColor(0x33, 0x33, 0x33));
    EXPECT_EQ(table->format().cellPadding(), 4);
}

TEST_F(Plan, ShowsLinksAndPicturesAsWords) {
    show("[words](https://a.example/x) ![a **cat**](file:///etc/passwd) ![](http://b.example/p)\n\n"
         "<https://c.example> https://d.example [r][1] **[bold](javascript:x)**\n\n"
         "[1]: http://e.example \"title\"");
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (const QTextLayout::FormatRange& range : block.textFormats()) {
            EXPECT_FALSE(range.format.isAnchor());
            EXPECT_EQ(range.format.anchorHref(), "");
            EXPECT_FALSE(range.format.isImageFormat());
            EXPECT_FALSE(range.format.fontUnderline());
        }
    }
    EXPECT_THAT(text(), HasSubstr("words a cat"));
    EXPECT_THAT(text(), HasSubstr("https://d.example"));
    EXPECT_EQ(formatOf("bold").fontWeight(), QFont::Bold);
    const std::string html = utf8(document.toHtml());
    for (const char* trace : {"<a ", "<img", "javascript:", "file:", "a.example", "e.example"}) {
        EXPECT_THAT(html, Not(HasSubstr(trace)));
    }
}

TEST_F(Plan, ShowsMarkupAsWritten) {
    const char* markup = "<b>x</b> <img src=\"file:///etc/passwd\"> <script>alert(1)</script> "
                         "<a href=\"javascript:x\">y</a> &lt;i&gt;";
    show(markup);
    EXPECT_EQ(text(), "<b>x</b> <img src=\"file:///etc/passwd\"> <script>alert(1)</script> "
                      "<a href=\"javascript:x\">y</a> <i>");
    show("<table><tr><td>\ncell\n</td></tr></table>");
    EXPECT_THAT(text(), HasSubstr("<table><tr><td>"));
    EXPECT_TRUE(document.rootFrame()->childFrames().isEmpty());
}

TEST_F(Plan, OfNothingIsEmpty) {
    show("");
    EXPECT_EQ(text(), "");
}

using ShownPlan = ViewTest;

TEST_F(ShownPlan, ReadsAsItsText) {
    showOpen({planning()});
    const QString text = hand.find("plan").property("text").toString();
    EXPECT_THAT(utf8(text), Not(HasSubstr("<a ")));
    EXPECT_THAT(utf8(text), Not(HasSubstr("<img")));
    QString plain;
    const int length = hand.find("plan").property("length").toInt();
    QMetaObject::invokeMethod(&hand.find("plan"), "getText", Q_RETURN_ARG(QString, plain),
                              Q_ARG(int, 0), Q_ARG(int, length));
    EXPECT_THAT(utf8(plain), HasSubstr("See the notes and a picture."));
}

TEST_F(ShownPlan, HasTheSizeOfTheOtherTexts) {
    SessionInfo info = planning();
    info.plan = QStringLiteral("One line.");
    showOpen({info});
    EXPECT_LT(hand.find("plan").property("contentHeight").toDouble(), 24);
    EXPECT_GT(hand.find("plan").property("contentHeight").toDouble(), 12);
}

TEST_F(ShownPlan, BreaksLinesOfCodeWithinTheCard) {
    SessionInfo info = planning();
    info.plan = QStringLiteral("```\n%1\n```").arg(QStringLiteral("x").repeated(2'000));
    showOpen({info});
    const QQuickItem& plan = hand.find("plan");
    EXPECT_LE(plan.property("contentWidth").toDouble(), plan.width());
}

TEST_F(ShownPlan, ScrollsWithinItsCard) {
    SessionInfo info = planning();
    info.plan = QStringLiteral("A paragraph.\n\n").repeated(60);
    showOpen({info});
    QQuickItem& scroll = hand.find("planScroll");
    EXPECT_EQ(scroll.height(), 132);
    hand.wheel(scroll, 120);
    EXPECT_TRUE(hand.waitFor([&] { return scroll.property("contentY").toDouble() > 0; }));
    EXPECT_EQ(hand.find("list").property("contentY"), 0);
}

} // namespace
} // namespace sallowmere
