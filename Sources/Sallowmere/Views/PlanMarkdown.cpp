// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Views/PlanMarkdown.h"

#include "Sallowmere/Views/PlanStyle.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>

#include <vector>

namespace sallowmere::PlanMarkdown {

namespace {

/// Asks nobody for pictures or style sheets.
class ClosedDocument : public QTextDocument {
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

struct Piece {
    int position;
    int length;
    QTextCharFormat format;
};

std::vector<Piece> pieces(const QTextDocument& document) {
    std::vector<Piece> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextFragment fragment = part.fragment();
            found.push_back({fragment.position(), fragment.length(), fragment.charFormat()});
        }
    }
    return found;
}

QString description(const QTextImageFormat& picture) {
    return picture.property(QTextFormat::ImageAltText).toString();
}

QTextCharFormat withoutLink(QTextCharFormat format) {
    for (const int property : {QTextFormat::IsAnchor, QTextFormat::AnchorHref,
                               QTextFormat::AnchorName, QTextFormat::TextToolTip,
                               QTextFormat::TextUnderlineStyle, QTextFormat::ForegroundBrush}) {
        format.clearProperty(property);
    }
    return format;
}

/// From the end, so that the places of the other pieces stay.
void closeLinksAndPictures(QTextDocument& document) {
    const std::vector<Piece> all = pieces(document);
    for (auto piece = all.rbegin(); piece != all.rend(); ++piece) {
        QTextCursor cursor(&document);
        cursor.setPosition(piece->position);
        cursor.setPosition(piece->position + piece->length, QTextCursor::KeepAnchor);
        if (piece->format.isImageFormat()) {
            cursor.insertText(description(piece->format.toImageFormat()), QTextCharFormat());
        } else if (piece->format.isAnchor()) {
            cursor.setCharFormat(withoutLink(piece->format));
        }
    }
}

} // namespace

QString styled(const QString& markdown) {
    ClosedDocument document;
    PlanStyle::prepare(document);
    QTextDocument::MarkdownFeatures features = QTextDocument::MarkdownDialectGitHub;
    document.setMarkdown(markdown, features.setFlag(QTextDocument::MarkdownNoHTML));
    closeLinksAndPictures(document);
    PlanStyle::apply(document);
    return document.toHtml();
}

} // namespace sallowmere::PlanMarkdown
