#pragma once

// Shows the formats that Qt's text layout has no drawing for, without
// touching the document: hidden text, raised and lowered text at full size,
// word-only underline through display-only formats; double, thick and
// hairline underlines, list labels, tab leaders and the Symbol font's
// characters drawn over the text after it is painted.

#include <QList>
#include <QObject>
#include <QRectF>
#include <QTextLayout>

class QPainter;
class QTextBlock;
class QTextDocument;

namespace tornelia {

// The display formats live in the blocks' layouts, never in the document,
// and are set without an edit of the document: a Change raised for them
// would reach the handlers as if the user had typed.
class FormatPainter : public QObject {
    Q_OBJECT
public:
    // Owned by parent (the view), working on doc; the formats go with it.
    FormatPainter(QTextDocument* doc, QObject* parent);
    ~FormatPainter() override;

    // Sets the display formats of every block anew.
    void refresh();
    // What a block shows beyond its own formats.
    static QList<QTextLayout::FormatRange> displayFormats(const QTextBlock& block);
    // Draws over the blocks in exposed (item coordinates) what Qt does not:
    // the underlines, list labels, tab leaders and Symbol font characters.
    static void paintOverlay(QPainter* painter, const QTextDocument* doc, const QRectF& exposed);
    // Clips Qt's own list markers out of the document's painting: Qt 6.4
    // numbers every list from 1 and has three bullets, so the overlay draws
    // the labels instead. Call before the document is drawn.
    static void keepOutListMarkers(QPainter* painter, const QTextDocument* doc, const QRectF& exposed);

private:
    void onContentsChange(int from, int removed, int added);

    QTextDocument* doc_;
};

}  // namespace tornelia
