// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/PlanStyle.h"

#include <QColor>
#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFragment>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <utility>
#include <vector>

namespace sallowmere::PlanStyle {

namespace {

/// Fonts count in points of 1/72 inch, the panel in those of 1/96.
constexpr double fontPoint = 72.0 / 96.0;
constexpr double bodySize = 12 * fontPoint;
constexpr double codeSize = 11 * fontPoint;
constexpr double listIndent = 16;
constexpr double quoteIndent = 12;
constexpr double paragraphGap = 4;
constexpr double tableGap = 8;
constexpr double headingGap = 8;
constexpr double itemGap = 2;

const QColor heading(0xff, 0xff, 0xff);
const QColor codeGround(0x26, 0x26, 0x26);
const QColor line(0x33, 0x33, 0x33);
const QColor quote(0x9e, 0x9e, 0x9e);

double headingSize(int level) {
    return std::max(13.5 - 0.5 * level, 12.0) * fontPoint;
}

QTextCursor selected(const QTextBlock& block) {
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    return cursor;
}

bool isCode(const QTextBlockFormat& format) {
    return format.hasProperty(QTextFormat::BlockCodeFence)
           || format.hasProperty(QTextFormat::BlockCodeLanguage) || format.nonBreakableLines();
}

QTextCharFormat code() {
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("monospace")});
    format.setFontFixedPitch(true);
    format.setFontPointSize(codeSize);
    format.setBackground(codeGround);
    return format;
}

void styleHeading(const QTextBlock& block, int level) {
    QTextCharFormat format;
    format.setFontPointSize(headingSize(level));
    format.setFontWeight(QFont::DemiBold);
    format.setForeground(heading);
    format.setProperty(QTextFormat::FontSizeAdjustment, 0);
    selected(block).mergeCharFormat(format);
}

void styleBlock(const QTextBlock& block) {
    const QTextBlockFormat before = block.blockFormat();
    const int quoteLevel = before.intProperty(QTextFormat::BlockQuoteLevel);
    const bool isInTable = QTextCursor(block).currentTable() != nullptr;
    const int level = before.headingLevel();
    QTextBlockFormat format;
    format.setTopMargin(level > 0 && block.blockNumber() > 0 ? headingGap : 0);
    format.setBottomMargin(isInTable ? 0 : block.textList() ? itemGap : paragraphGap);
    format.setLeftMargin(quoteIndent * quoteLevel);
    format.setRightMargin(0);
    format.setIndent(0);
    if (block.textList()) {
        format.setLeftMargin(listIndent * std::max(block.textList()->format().indent(), 1));
    }
    if (level > 0) {
        styleHeading(block, level);
        // A view would enlarge it once more.
        format.setHeadingLevel(0);
    } else if (isCode(before)) {
        format.setBackground(codeGround);
        format.setNonBreakableLines(false);
        format.setBottomMargin(0);
        selected(block).mergeCharFormat(code());
    } else if (quoteLevel > 0) {
        QTextCharFormat quiet;
        quiet.setForeground(quote);
        selected(block).mergeCharFormat(quiet);
    }
    QTextCursor(block).mergeBlockFormat(format);
}

void styleCodeWithin(QTextDocument& document, const QTextBlock& block) {
    std::vector<std::pair<int, int>> places;
    for (auto part = block.begin(); !part.atEnd(); ++part) {
        const QTextFragment fragment = part.fragment();
        if (fragment.charFormat().fontFixedPitch()) {
            places.emplace_back(fragment.position(), fragment.position() + fragment.length());
        }
    }
    for (const auto& [begin, end] : places) {
        QTextCursor cursor(&document);
        cursor.setPosition(begin);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(code());
    }
}

void styleList(QTextList& list) {
    QTextListFormat format = list.format();
    // The items are indented by their margins: a view's own indentation is far too wide.
    format.setIndent(0);
    list.setFormat(format);
}

void styleTable(QTextTable& table) {
    QTextTableFormat format = table.format();
    // On either side of a line.
    format.setBorder(0.5);
    format.setBorderBrush(line);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderCollapse(true);
    format.setCellSpacing(0);
    format.setCellPadding(4);
    format.setTopMargin(tableGap);
    format.setBottomMargin(tableGap);
    table.setFormat(format);
}

void styleTables(QTextFrame& frame) {
    for (QTextFrame* child : frame.childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(child)) {
            styleTable(*table);
        }
        styleTables(*child);
    }
}

} // namespace

void prepare(QTextDocument& document) {
    QFont font;
    font.setPointSizeF(bodySize);
    document.setDefaultFont(font);
}

void apply(QTextDocument& document) {
    std::vector<QTextList*> lists;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        styleCodeWithin(document, block);
        styleBlock(block);
        QTextList* list = block.textList();
        if (list && std::find(lists.begin(), lists.end(), list) == lists.end()) {
            lists.push_back(list);
        }
    }
    for (QTextList* list : lists) {
        styleList(*list);
    }
    styleTables(*document.rootFrame());
}

} // namespace sallowmere::PlanStyle
