#include "controls/format_painter.h"

#include "core/text_format.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tornelia {

namespace {

bool drawnByUs(UnderlineKind k)
{
    return k == UnderlineKind::Double || k == UnderlineKind::Thick || k == UnderlineKind::Hair;
}

QColor inkOf(const QTextCharFormat& f)
{
    const qint64 c = foregroundOf(f);
    return c < 0 ? QColor(Qt::black) : toQColor(Colour(c));
}

}  // namespace

FormatPainter::FormatPainter(QTextDocument* doc, QObject* parent) : QObject(parent), doc_(doc)
{
    connect(doc_, &QTextDocument::contentsChange, this, &FormatPainter::onContentsChange);
    connect(doc_, &QObject::destroyed, this, [this] { doc_ = nullptr; });
    refresh();
}

FormatPainter::~FormatPainter()
{
    if (!doc_)
        return;
    for (QTextBlock b = doc_->begin(); b.isValid(); b = b.next())
        if (b.layout())
            b.layout()->clearFormats();
    doc_->markContentsDirty(0, doc_->characterCount());
}

void FormatPainter::refresh()
{
    for (QTextBlock b = doc_->begin(); b.isValid(); b = b.next())
        if (b.layout())
            b.layout()->setFormats(displayFormats(b));
    doc_->markContentsDirty(0, doc_->characterCount());
}

void FormatPainter::onContentsChange(int from, int /*removed*/, int added)
{
    // Inside the document's own change: the layout lays out this range
    // right after, with the formats set here.
    const QTextBlock last = doc_->findBlock(from + added);
    for (QTextBlock b = doc_->findBlock(from); b.isValid(); b = b.next()) {
        if (b.layout())
            b.layout()->setFormats(displayFormats(b));
        if (b == last)
            break;
    }
}

QList<QTextLayout::FormatRange> FormatPainter::displayFormats(const QTextBlock& block)
{
    QList<QTextLayout::FormatRange> ranges;
    const QString text = block.text();
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment frag = it.fragment();
        const QTextCharFormat f = frag.charFormat();
        if (f.isImageFormat())
            continue;
        const int start = frag.position() - block.position();
        const int length = frag.length();
        if (isHidden(f)) {
            // Hidden text keeps its place in the document and takes (almost)
            // none on the screen.
            QTextCharFormat gone;
            gone.setProperty(QTextFormat::FontPixelSize, 1);
            gone.setForeground(Qt::transparent);
            gone.setBackground(Qt::transparent);
            gone.setFontUnderline(false);
            gone.setFontStrikeOut(false);
            ranges.append({start, length, gone});
            continue;
        }
        QTextCharFormat shown;
        bool any = false;
        const UnderlineKind kind = underlineKindOf(f);
        if (drawnByUs(kind)) {
            shown.setFontUnderline(false);
            any = true;
        }
        if (const int half = offsetHalfPointsOf(f); half != 0) {
            // RTF raises and lowers at full size; Qt's superscript would
            // shrink the letters.
            const double points = f.fontPointSize() > 0 ? f.fontPointSize() : 10.0;
            shown.setVerticalAlignment(QTextCharFormat::AlignNormal);
            shown.setBaselineOffset(half / 2.0 / points * 100.0);
            any = true;
        }
        if (kind == UnderlineKind::Word) {
            // The blanks go bare; the words between keep the line.
            QTextCharFormat blank = shown;
            blank.setFontUnderline(false);
            int runStart = start;
            for (int i = start; i <= start + length; ++i) {
                const bool end = i == start + length || i >= text.size();
                if (end || text[i].isSpace()) {
                    if (i > runStart && any)
                        ranges.append({runStart, i - runStart, shown});
                    if (end)
                        break;
                    ranges.append({i, 1, blank});
                    runStart = i + 1;
                }
            }
            continue;
        }
        if (any)
            ranges.append({start, length, shown});
    }
    return ranges;
}

namespace {

// The first block whose box reaches down to y, found by halving: walking
// from the top made every paint cost the part of the document above the
// window. Boxes grow downwards with the block number, except side by side
// in a table row, so the search starts a few blocks early.
QTextBlock firstBlockReaching(const QTextDocument* doc, qreal y)
{
    QAbstractTextDocumentLayout* docLayout = doc->documentLayout();
    int lo = 0;
    int hi = doc->blockCount() - 1;
    while (lo < hi) {
        const int mid = lo + (hi - lo) / 2;
        const QTextBlock block = doc->findBlockByNumber(mid);
        // A long document is laid out from the top a slice at a time while
        // the window runs; a block with no lines yet lies below all that is
        // on screen, and asking its box would lay out everything above it.
        if (block.layout() && block.layout()->lineCount() == 0) {
            hi = mid;
            continue;
        }
        if (docLayout->blockBoundingRect(block).bottom() < y)
            lo = mid + 1;
        else
            hi = mid;
    }
    constexpr int kTableSlack = 64;
    return doc->findBlockByNumber(std::max(0, lo - kTableSlack));
}

}  // namespace

void FormatPainter::paintOverlay(QPainter* painter, const QTextDocument* doc, const QRectF& exposed)
{
    QAbstractTextDocumentLayout* docLayout = doc->documentLayout();
    if (!docLayout)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (QTextBlock block = firstBlockReaching(doc, exposed.top()); block.isValid(); block = block.next()) {
        const QRectF box = docLayout->blockBoundingRect(block);
        if (box.bottom() < exposed.top())
            continue;
        if (box.top() > exposed.bottom())
            break;
        const QTextLayout* layout = block.layout();
        if (!layout)
            continue;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            const QTextCharFormat f = frag.charFormat();
            const UnderlineKind kind = underlineKindOf(f);
            if (!drawnByUs(kind) || isHidden(f))
                continue;
            const QFontMetricsF metrics(f.font());
            const qreal width = std::max<qreal>(1.0, metrics.lineWidth());
            const int fs = frag.position() - block.position();
            const int fe = fs + frag.length();
            for (int n = 0; n < layout->lineCount(); ++n) {
                const QTextLine line = layout->lineAt(n);
                const int a = std::max(fs, line.textStart());
                const int b = std::min(fe, line.textStart() + line.textLength());
                if (a >= b)
                    continue;
                const qreal x1 = box.left() + line.cursorToX(a);
                const qreal x2 = box.left() + line.cursorToX(b);
                const qreal y = box.top() + line.y() + line.ascent() + std::max<qreal>(1.0, metrics.underlinePos());
                QPen pen(inkOf(f));
                pen.setCapStyle(Qt::FlatCap);
                switch (kind) {
                case UnderlineKind::Double:
                    pen.setWidthF(width);
                    painter->setPen(pen);
                    painter->drawLine(QPointF(x1, y), QPointF(x2, y));
                    painter->drawLine(QPointF(x1, y + 2 * width), QPointF(x2, y + 2 * width));
                    break;
                case UnderlineKind::Thick:
                    pen.setWidthF(std::max<qreal>(2.0, std::round(width * 2.5)));
                    painter->setPen(pen);
                    painter->drawLine(QPointF(x1, y + pen.widthF() / 2), QPointF(x2, y + pen.widthF() / 2));
                    break;
                default:  // hairline: one device pixel at any zoom
                    pen.setWidth(0);
                    pen.setCosmetic(true);
                    painter->setPen(pen);
                    painter->drawLine(QPointF(x1, y), QPointF(x2, y));
                    break;
                }
            }
        }
    }
    painter->restore();
}

}  // namespace tornelia
