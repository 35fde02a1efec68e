#pragma once

// Shows the formats that Qt's text layout has no drawing for, without
// touching the document: hidden text, raised and lowered text at full size,
// word-only underline through display-only formats; double, thick and
// hairline underlines drawn over the text after it is painted.

#include <QRectF>
#include <QSyntaxHighlighter>

class QPainter;
class QTextDocument;

namespace tornelia {

class FormatPainter : public QSyntaxHighlighter {
    Q_OBJECT
public:
    // Owned by parent (the view), working on doc; formats go with it.
    FormatPainter(QTextDocument* doc, QObject* parent);

    // Draws the underlines of the blocks in exposed (item coordinates).
    static void paintOverlay(QPainter* painter, const QTextDocument* doc, const QRectF& exposed);

protected:
    void highlightBlock(const QString& text) override;
};

}  // namespace tornelia
