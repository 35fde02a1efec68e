#include "controls/format_painter.h"

#include "core/text_format.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QRegion>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <QTextList>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tornelia {

namespace {

bool drawnByUs(UnderlineKind k)
{
    return k == UnderlineKind::Double || k == UnderlineKind::Thick || k == UnderlineKind::Hair;
}

// The font the Symbol font's characters are drawn in. Qt looks for no
// other font for a character that a symbol font lacks, so the stand-ins go
// in a text font of the same size, serif as the Symbol font's letters are.
QFont symbolStandIn(const QTextCharFormat& f)
{
    QFont font = f.font();
    font.setFamilies({QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif"), QStringLiteral("DejaVu Serif")});
    font.setStyleHint(QFont::Serif);
    return font;
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

namespace {

// Marks the ranges the painter set among a layout's extra formats, so that
// those of others (the spelling's marks) stay when the painter's own change.
constexpr int kDisplayRange = QTextFormat::UserProperty + 61;

QList<QTextLayout::FormatRange> ownDisplayFormats(const QTextBlock& block)
{
    QList<QTextLayout::FormatRange> ranges = FormatPainter::displayFormats(block);
    for (auto& r : ranges)
        r.format.setProperty(kDisplayRange, true);
    return ranges;
}

// Gives the block its display formats, keeping the other ranges after
// them. Setting a layout's formats makes its whole paragraph, with the
// paragraph mark, a change of the document, and the layout then lays out
// the next paragraph as well: so nothing is set when nothing would change,
// which is the paragraph of plain text being typed in.
void applyDisplayFormats(const QTextBlock& block)
{
    QTextLayout* layout = block.layout();
    if (!layout)
        return;
    QList<QTextLayout::FormatRange> ranges = ownDisplayFormats(block);
    const QList<QTextLayout::FormatRange> old = layout->formats();
    QList<QTextLayout::FormatRange> oldOwn;
    QList<QTextLayout::FormatRange> others;
    for (const auto& r : old)
        (r.format.hasProperty(kDisplayRange) ? oldOwn : others).append(r);
    if (oldOwn == ranges)
        return;
    ranges.append(others);
    layout->setFormats(ranges);
}

}  // namespace

void FormatPainter::refresh()
{
    for (QTextBlock b = doc_->begin(); b.isValid(); b = b.next())
        applyDisplayFormats(b);
    doc_->markContentsDirty(0, doc_->characterCount());
}

void FormatPainter::onContentsChange(int from, int /*removed*/, int added)
{
    // Inside the document's own change: the layout lays out this range
    // right after, with the formats set here.
    const QTextBlock last = doc_->findBlock(from + added);
    for (QTextBlock b = doc_->findBlock(from); b.isValid(); b = b.next()) {
        applyDisplayFormats(b);
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
        if (const int half = offsetHalfPointsOf(f); half != 0 && superSubOf(f) == 0) {
            // RTF raises and lowers at full size; Qt's superscript would
            // shrink the letters.
            const double points = f.fontPointSize() > 0 ? f.fontPointSize() : 10.0;
            shown.setVerticalAlignment(QTextCharFormat::AlignNormal);
            shown.setBaselineOffset(half / 2.0 / points * 100.0);
            any = true;
        }
        if (isSymbolFont(f)) {
            // The Symbol font's bytes have no glyphs on this desktop: each
            // goes invisible with the width of its Unicode character, which
            // the overlay draws in its place.
            const QFontMetricsF own(f.font());
            const QFontMetricsF standIn(symbolStandIn(f));
            for (int i = start; i < start + length && i < text.size(); ++i) {
                const char16_t u = symbolFontChar(text[i].unicode());
                if (!u)
                    continue;
                QTextCharFormat stand = shown;
                stand.setForeground(Qt::transparent);
                stand.setFontLetterSpacingType(QFont::AbsoluteSpacing);
                stand.setFontLetterSpacing(standIn.horizontalAdvance(QChar(u)) - own.horizontalAdvance(text[i]));
                ranges.append({i, 1, stand});
            }
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


// Where Qt draws a list item's own marker, and where ours goes: left of the
// first line's text, on that line. Empty when the block is in no list.
struct LabelPlace {
    QRectF area;     // to keep Qt's marker out of
    QPointF origin;  // baseline start of our label
    QString label;
    QTextCharFormat format;
};

// The label takes the look of the paragraph's first text, as a reader
// expects; an empty paragraph has only its own character format.
QTextCharFormat labelFormat(const QTextBlock& block)
{
    for (auto it = block.begin(); !it.atEnd(); ++it)
        if (!it.fragment().charFormat().isImageFormat())
            return it.fragment().charFormat();
    return block.charFormat();
}

std::optional<LabelPlace> labelPlace(const QTextBlock& block, const QRectF& box)
{
    QTextList* list = block.textList();
    const QTextLayout* layout = block.layout();
    if (!list || !layout || layout->lineCount() == 0)
        return std::nullopt;
    LabelPlace p;
    p.format = labelFormat(block);
    const QFontMetricsF metrics(p.format.font());
    const QFontMetricsF qtMetrics(block.charFormat().font());  // what Qt draws its marker in
    p.label = listLabel(block);
    const QTextLine line = layout->lineAt(0);
    const qreal textStart = box.left() + line.naturalTextRect().left();
    const qreal gap = metrics.horizontalAdvance(u' ');
    const QTextListFormat::Style style = list->format().style();
    const bool bullet = style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle ||
                        style == QTextListFormat::ListSquare;
    const qreal qtWidth = bullet ? qtMetrics.lineSpacing() / 3 : qtMetrics.horizontalAdvance(list->itemText(block));
    const qreal qtGap = qtMetrics.horizontalAdvance(u' ');
    const qreal ownWidth = metrics.horizontalAdvance(p.label);
    const qreal top = box.top() + line.y();
    p.area = QRectF(QPointF(textStart - std::max(qtGap + qtWidth, gap + ownWidth) - 2, top),
                    QPointF(textStart - std::min(qtGap, gap) / 2,
                            top + std::max({line.height(), metrics.height(), qtMetrics.height()})));
    p.origin = QPointF(textStart - gap - ownWidth, top + line.ascent());
    return p;
}

void paintListLabel(QPainter* painter, const QTextBlock& block, const QRectF& box)
{
    const std::optional<LabelPlace> p = labelPlace(block, box);
    if (!p || p->label.isEmpty())
        return;
    painter->setFont(p->format.font());
    painter->setPen(inkOf(p->format));
    painter->drawText(p->origin, p->label);
}

// The Unicode characters of Symbol font bytes, over the room their
// display format left for them.
void paintSymbols(QPainter* painter, const QTextBlock& block, const QTextFragment& frag, const QRectF& box)
{
    const QTextLayout* layout = block.layout();
    const QTextCharFormat f = frag.charFormat();
    const QString text = frag.text();
    painter->setFont(symbolStandIn(f));
    painter->setPen(inkOf(f));
    for (int i = 0; i < text.size(); ++i) {
        const char16_t u = symbolFontChar(text[i].unicode());
        if (!u)
            continue;
        const int at = frag.position() - block.position() + i;
        const QTextLine line = layout->lineForTextPosition(at);
        if (!line.isValid())
            continue;
        const qreal raise = f.baselineOffset() / 100.0 * QFontMetricsF(f.font()).height();
        painter->drawText(QPointF(box.left() + line.cursorToX(at), box.top() + line.y() + line.ascent() - raise),
                          QString(QChar(u)));
    }
}

// A tab that reaches a stop with a leader fills its room with the
// leader's dots, hyphens or line, aligned from one line to the next as a
// table of contents wants.
void paintLeaders(QPainter* painter, const QTextBlock& block, const QTextFragment& frag, const QRectF& box,
                  const std::vector<TabStop>& stops)
{
    const QString text = frag.text();
    const QTextLayout* layout = block.layout();
    const QTextCharFormat f = frag.charFormat();
    const QFontMetricsF metrics(f.font());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != u'\t')
            continue;
        const int at = frag.position() - block.position() + i;
        const QTextLine line = layout->lineForTextPosition(at);
        if (!line.isValid())
            continue;
        const qreal x1 = line.cursorToX(at);
        const qreal x2 = line.cursorToX(at + 1);
        if (x2 - x1 < 1)
            continue;
        // Qt moves a tab to the first stop past where it starts.
        const auto stop = std::find_if(stops.begin(), stops.end(), [x1](const TabStop& t) { return t.twips / 15.0 > x1 + 0.5; });
        if (stop == stops.end() || stop->leader <= 0)
            continue;
        const qreal baseline = box.top() + line.y() + line.ascent();
        QPen pen(inkOf(f));
        pen.setCapStyle(Qt::FlatCap);
        if (stop->leader == 3 || stop->leader == 4) {
            pen.setWidthF(std::max<qreal>(1.0, metrics.lineWidth()) * (stop->leader == 4 ? 2 : 1));
            painter->setPen(pen);
            const qreal y = baseline + std::max<qreal>(1.0, metrics.underlinePos());
            painter->drawLine(QPointF(box.left() + x1, y), QPointF(box.left() + x2, y));
            continue;
        }
        const QChar mark = stop->leader == 2 ? u'-' : stop->leader == 5 ? u'=' : u'.';
        const qreal unit = metrics.horizontalAdvance(mark);
        if (unit <= 0)
            continue;
        // On a grid of the mark's width, with half a mark clear at each end.
        const qreal first = std::ceil((x1 + unit / 2) / unit) * unit;
        const int count = int(std::floor((x2 - unit / 2 - first) / unit));
        if (count <= 0)
            continue;
        painter->setFont(f.font());
        painter->setPen(pen);
        painter->drawText(QPointF(box.left() + first, baseline), QString(count, mark));
    }
}

}  // namespace

void FormatPainter::keepOutListMarkers(QPainter* painter, const QTextDocument* doc, const QRectF& exposed)
{
    QAbstractTextDocumentLayout* docLayout = doc->documentLayout();
    if (!docLayout)
        return;
    QRegion markers;
    for (QTextBlock block = firstBlockReaching(doc, exposed.top()); block.isValid(); block = block.next()) {
        const QRectF box = docLayout->blockBoundingRect(block);
        if (box.top() > exposed.bottom())
            break;
        if (box.bottom() < exposed.top())
            continue;
        if (const std::optional<LabelPlace> p = labelPlace(block, box))
            markers += p->area.toAlignedRect();
    }
    if (!markers.isEmpty())
        painter->setClipRegion(QRegion(exposed.toAlignedRect()).subtracted(markers), Qt::IntersectClip);
}

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
        if (!layout || layout->lineCount() == 0)
            continue;
        if (block.textList())
            paintListLabel(painter, block, box);
        const std::vector<TabStop> stops = tabStopsOf(block.blockFormat());
        const bool leaders = std::any_of(stops.begin(), stops.end(), [](const TabStop& t) { return t.leader > 0; });
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            const QTextCharFormat f = frag.charFormat();
            if (isHidden(f) || f.isImageFormat())
                continue;
            if (leaders)
                paintLeaders(painter, block, frag, box, stops);
            if (isSymbolFont(f))
                paintSymbols(painter, block, frag, box);
            const UnderlineKind kind = underlineKindOf(f);
            if (!drawnByUs(kind))
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
