#include "controls/edit_layout.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>
#include <QTimer>
#include <QtGui/private/qfixed_p.h>
#include <QtGui/private/qtextdocumentlayout_p.h>

#include <algorithm>
#include <climits>
#include <utility>
#include <cmath>
#include <vector>

namespace edit_layout {

namespace {

// The person has stopped typing: the pass over the document, which took the
// time of a key before, runs now and is not felt.
constexpr int kSettleAfterMs = 400;

// Larger edits are pastes and the like, which may move anything.
constexpr int kLargestInPlace = 64;

// Where the next line goes down the root frame, and the sheet it is on,
// counted as Qt's layout counts them, in its fixed-point units so the
// places come out to the same 64th of a pixel.
struct Flow {
    QFixed y;
    QFixed pageHeight = QFIXED_MAX;
    QFixed pageBottom = QFIXED_MAX;
    QFixed topMargin;
    QFixed bottomMargin;

    bool paged() const { return pageHeight != QFIXED_MAX; }
    void newPage()
    {
        if (!paged())
            return;
        pageBottom += pageHeight;
        y = std::max(y, pageBottom - pageHeight + bottomMargin + topMargin);
    }
};

// The steps a line takes down the page, from its font and its paragraph's
// line spacing.
struct LineStep {
    QFixed adjustment;
    QFixed breakHeight;
    QFixed height;
    QFixed bottom;
};

LineStep stepOf(const QTextBlockFormat& format, const QTextLine& line)
{
    LineStep s;
    const qreal raw = std::ceil(line.ascent() + line.descent() + line.leading());
    s.height = QFixed::fromReal(format.lineHeight(raw, 1));
    s.bottom = QFixed::fromReal(format.lineHeight(line.height(), 1));
    const int type = format.lineHeightType();
    if (type == QTextBlockFormat::FixedHeight || type == QTextBlockFormat::MinimumHeight) {
        s.breakHeight = s.bottom;
        s.adjustment = type == QTextBlockFormat::FixedHeight
                           ? QFixed::fromReal(line.ascent() + std::max(line.leading(), qreal(0))) - ((s.height * 4) / 5)
                           : QFixed::fromReal(line.height()) - s.height;
    } else {
        s.breakHeight = QFixed::fromReal(line.height());
    }
    return s;
}

// Puts a paragraph's lines down the flow from where it stands. A paragraph
// Qt lays out again goes onto a new sheet as often as a line needs; one it
// only moves, once per line.
void placeLines(QTextLayout* layout, const QTextBlockFormat& format, Flow& flow, bool laidOutAgain)
{
    const QFixed top = flow.y;
    QFixed bottom;
    for (int i = 0; i < layout->lineCount(); ++i) {
        QTextLine line = layout->lineAt(i);
        const LineStep step = stepOf(format, line);
        if (laidOutAgain) {
            while (flow.pageHeight > 0 && flow.y + step.breakHeight > flow.pageBottom &&
                   flow.pageHeight >= step.breakHeight)
                flow.newPage();
            line.setPosition(QPointF(line.x(), (flow.y - top - step.adjustment).toReal()));
        } else if (flow.paged()) {
            if (flow.y + step.breakHeight > flow.pageBottom)
                flow.newPage();
            line.setPosition(QPointF(line.x(), (flow.y - step.adjustment).toReal() - layout->position().y()));
        }
        bottom = flow.y + step.bottom;
        flow.y += step.height;
    }
    flow.y = std::max(flow.y, bottom);
}

// The root frame's flow as Qt starts it: margins, border and padding each
// to a whole pixel, as Qt takes them.
Flow rootFlow(const QTextDocument* doc)
{
    const QTextFrameFormat root = doc->rootFrame()->frameFormat();
    const auto whole = [](qreal v) { return QFixed::fromReal(v).round(); };
    const QFixed edge = whole(root.border()) + whole(root.padding());
    Flow flow;
    if (doc->pageSize().height() > 0)
        flow.pageHeight = QFixed::fromReal(doc->pageSize().height());
    flow.topMargin = whole(root.topMargin()) + edge;
    flow.bottomMargin = whole(root.bottomMargin()) + edge;
    flow.y = flow.topMargin;
    return flow;
}

void startPage(Flow& flow)
{
    if (flow.paged())
        flow.pageBottom = ((flow.y / flow.pageHeight).truncate() + 1) * flow.pageHeight - flow.bottomMargin;
}

class EditLayout : public QTextDocumentLayout {
public:
    explicit EditLayout(QTextDocument* doc) : QTextDocumentLayout(doc)
    {
        settleTimer_.setSingleShot(true);
        settleTimer_.setInterval(kSettleAfterMs);
        QObject::connect(&settleTimer_, &QTimer::timeout, this, [this] { settle(); });
    }

    // Qt's pass over the document for the edits laid out in place, as one
    // edit that spans them all.
    void settle()
    {
        settleTimer_.stop();
        if (waitingFrom_ < 0)
            return;
        const int length = std::max(1, std::min(waitingEnd_, document()->characterCount()) - waitingFrom_);
        pass(waitingFrom_, length, length);
    }

    // Lays out the one paragraph an edit falls in, if nothing else moves
    // but what Qt's pass would only move. Qt lays a paragraph out on the
    // lines it gives it, whose widths, places and page breaks come from
    // what is above; with the same heights those are the lines it had, so
    // the result is the one Qt's pass would give. `edit` is where the text
    // changed by `grown` characters, if it did.
    bool layOutInPlace(const QTextBlock& block, int edit = 0, int grown = 0)
    {
        QTextDocument* doc = document();
        // Not while a long document is still being laid out in slices, nor
        // in a document that does not wrap, whose width follows its longest
        // line.
        if (layoutStatus() != 100 || doc->pageSize().width() <= 0 || !block.isVisible() || paintDevice())
            return false;
        // Paragraphs in tables size their rows and columns; paragraphs beside
        // a table may be drawn into its border.
        const QTextBlock before = block.previous();
        const QTextBlock after = block.next();
        if (!inRootFlow(block) || (before.isValid() && !inRootFlow(before)) || (after.isValid() && !inRootFlow(after)))
            return false;
        QTextLayout* layout = block.layout();
        if (!layout || layout->lineCount() == 0 || layout->textOption().textDirection() != block.textDirection())
            return false;
        // What Qt's pass left, before anything is laid out in place.
        if (!copied_)
            copyRestartPoints(edit, grown);
        if (restart_.empty())
            return false;

        std::vector<Line> lines;
        lines.reserve(size_t(layout->lineCount()));
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine l = layout->lineAt(i);
            lines.push_back({l.position(), l.width(), l.ascent(), l.descent(), l.leading()});
        }
        // The lines after the first are as wide as the second was; in a
        // paragraph of one line, as the first without its indent.
        const QTextBlockFormat format = block.blockFormat();
        Line rest = lines.size() > 1 ? lines[1] : lines[0];
        if (lines.size() == 1) {
            if (block.textDirection() != Qt::LeftToRight)
                return false;
            const QFixed indent = QFixed::fromReal(format.textIndent());
            rest.position.setX((QFixed::fromReal(rest.position.x()) - indent).toReal());
            rest.width = (QFixed::fromReal(rest.width) + indent).toReal();
        }

        layout->beginLayout();
        bool same = true;
        size_t n = 0;
        for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine(), ++n) {
            const Line& shape = n == 0 ? lines[0] : rest;
            line.setLeadingIncluded(true);
            line.setLineWidth(shape.width);
            line.setPosition(QPointF(shape.position.x(), n < lines.size() ? lines[n].position.y() : 0));
            // A word wider than the line makes Qt break it anywhere.
            if (line.naturalTextWidth() > shape.width) {
                layout->endLayout();
                return false;
            }
            same = same && n < lines.size() && line.ascent() == lines[n].ascent &&
                   line.descent() == lines[n].descent && line.leading() == lines[n].leading;
        }
        layout->endLayout();
        const QRectF box = blockBoundingRect(block);
        if (same && n == lines.size()) {
            emit update(QRectF(0, box.top(), std::max(box.right(), documentSize().width()) + 1, box.height()));
            return true;
        }
        // The paragraph grew or shrank: what follows moves. On the sheets,
        // Qt's pass lays out again every paragraph that crosses a sheet's
        // end, hundreds in a long document; here the lines only move.
        if (!moveWhatFollows(block, format))
            return false;
        moved_ = true;
        emit update(QRectF(0, box.top(), qreal(INT_MAX), qreal(INT_MAX)));
        return true;
    }

    // An edit laid out in place: it waits for Qt's pass.
    void laidOutInPlace(int from, int oldLength, int length)
    {
        ++counts_.inPlace;
        wait(from, oldLength, length);
    }

    Counts counts_;

    // Qt draws from and to points it kept when it laid the document out,
    // found by their height and by where they were in the text; below the
    // paragraphs laid out in place those have moved. If drawing the area
    // from them would leave out a paragraph, Qt's pass runs first.
    void draw(QPainter* painter, const PaintContext& context) override
    {
        if (waitingFrom_ >= 0 && (!context.clip.isValid() || startsLate(context.clip.top()) ||
                                  stopsEarly(context.clip.bottom())))
            settle();
        QTextDocumentLayout::draw(painter, context);
    }

    // A click or the like finds its paragraph from the same points.
    int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override
    {
        if (waitingFrom_ >= 0 && startsLate(point.y()))
            const_cast<EditLayout*>(this)->settle();
        return QTextDocumentLayout::hitTest(point, accuracy);
    }

protected:
    void documentChanged(int from, int oldLength, int length) override
    {
        // Letters typed or deleted within one paragraph.
        const int blocks = document()->blockCount();
        const bool sameParagraphs = std::exchange(blockCount_, blocks) == blocks;
        if (sameParagraphs && length != oldLength && std::max(length, oldLength) <= kLargestInPlace) {
            const QTextBlock block = document()->findBlock(from);
            if (block.isValid() && from + length < block.position() + block.length() &&
                layOutInPlace(block, from + length, length - oldLength)) {
                laidOutInPlace(from, oldLength, length);
                return;
            }
        }
        // Qt's pass starts from the last point it kept above the edit; the
        // points below the paragraphs laid out in place stand where those
        // paragraphs ended before. So the pass starts above them all.
        if (waitingFrom_ >= 0) {
            wait(from, oldLength, length);
            oldLength += std::max(0, (waitingEnd_ - waitingFrom_) - length);
            length = waitingEnd_ - waitingFrom_;
            from = waitingFrom_;
        }
        pass(from, oldLength, length);
    }

private:
    struct Line {
        QPointF position;
        qreal width;
        qreal ascent;
        qreal descent;
        qreal leading;
    };

    // A point Qt's pass restarts from and draws from: a height down the
    // root frame and the place in the text of what starts there.
    struct RestartPoint {
        QFixed y;
        int position;
    };

    void pass(int from, int oldLength, int length)
    {
        waitingFrom_ = waitingEnd_ = -1;
        settleTimer_.stop();
        copied_ = false;
        moved_ = false;
        ++counts_.whole;
        QTextDocumentLayout::documentChanged(from, oldLength, length);
    }

    // Widens the span waiting for Qt's pass by an edit, in the positions
    // after the edit, and puts the pass off until typing stops.
    void wait(int from, int oldLength, int length)
    {
        settleTimer_.start();
        if (waitingFrom_ < 0) {
            waitingFrom_ = from;
            waitingEnd_ = from + length;
            return;
        }
        if (from < waitingEnd_)
            waitingEnd_ = from + oldLength <= waitingEnd_ ? waitingEnd_ + length - oldLength : from + length;
        waitingFrom_ = std::min(waitingFrom_, from);
        waitingEnd_ = std::max(waitingEnd_, from + length);
    }

    bool inRootFlow(const QTextBlock& block) const
    {
        QTextDocument* doc = document();
        return block.isValid() && doc->frameAt(block.position()) == doc->rootFrame();
    }

    // Qt keeps a point every 2000 pixels down the root frame, where a
    // paragraph or a table starts, and one at the end. They are worked out
    // again here the way Qt sets them, from where its pass left each
    // paragraph; the end must come out where Qt's does, or nothing is
    // laid out in place until the next pass. The text may have changed by
    // `grown` characters before `edit` since: Qt's places are from before.
    void copyRestartPoints(int edit, int grown)
    {
        copied_ = true;
        restart_.clear();
        QTextDocument* doc = document();
        QTextFrame* root = doc->rootFrame();
        Flow flow = rootFlow(doc);
        restart_.push_back({flow.y, 0});
        QTextFrame* previousFrame = nullptr;
        QTextBlock previousBlock;
        for (QTextFrame::iterator it = root->begin(); !it.atEnd(); ++it) {
            QTextFrame* frame = it.currentFrame();
            int position = frame ? frame->firstPosition() : it.currentBlock().position();
            if (position >= edit)
                position -= grown;
            const QFixed distance = flow.y - restart_.back().y;
            if (distance > QFixed(2000) || distance < QFixed(-2000))
                restart_.push_back({flow.y, position});
            if (frame) {
                flow.y = QFixed::fromReal(frameBoundingRect(frame).bottom());
                startPage(flow);
                if (frame->frameFormat().pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
                    flow.newPage();
                previousFrame = frame;
                previousBlock = QTextBlock();
                continue;
            }
            const QTextBlock block = it.currentBlock();
            const QTextBlockFormat format = block.blockFormat();
            if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
                flow.newPage();
            const QFixed top = flow.y;
            const QFixed pageBottom = flow.pageBottom;
            if (block.isVisible()) {
                QTextLayout* layout = block.layout();
                if (!layout || layout->lineCount() == 0) {
                    restart_.clear();
                    return;
                }
                const QTextLine last = layout->lineAt(layout->lineCount() - 1);
                const LineStep step = stepOf(format, last);
                const QFixed lineTop =
                    QFixed::fromReal(layout->position().y()) + QFixed::fromReal(last.y()) + step.adjustment;
                flow.y = std::max(lineTop + step.height, lineTop + step.bottom);
                startPage(flow);
            }
            // Qt hides an empty paragraph before or after a table in the
            // table's border.
            QTextFrame::iterator next = it;
            ++next;
            const auto* table = next.atEnd() ? nullptr : qobject_cast<const QTextTable*>(next.currentFrame());
            if (table && block.length() == 1 && !format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth) &&
                !format.hasProperty(QTextFormat::BackgroundBrush) && table->firstPosition() == block.position() + 1) {
                const qreal above = previousBlock.isValid() ? previousBlock.blockFormat().bottomMargin() : 0;
                flow.y = top + QFixed::fromReal(std::max(above, format.topMargin()));
                flow.pageBottom = pageBottom;
            } else {
                if (qobject_cast<const QTextTable*>(previousFrame) && previousFrame->lastPosition() == block.position() - 1) {
                    if (block.length() > 1 && block.text().at(0) == QChar::LineSeparator) {
                        restart_.clear();  // a case of Qt's own not copied
                        return;
                    }
                    if (block.length() == 1) {
                        flow.y = top;
                        flow.pageBottom = pageBottom;
                    }
                }
                if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
                    flow.newPage();
            }
            previousFrame = nullptr;
            previousBlock = block;
        }
        restart_.push_back({flow.y, doc->characterCount() - grown});
        // Qt's root frame ends below its last line by its bottom margin.
        if ((flow.y + flow.bottomMargin).toReal() != documentSize().height())
            restart_.clear();
    }

    // Qt starts drawing at the item where the last point above the area
    // was in the text: late, if what ends above that item still reaches
    // into the area.
    bool startsLate(qreal top) const
    {
        if (restart_.empty())
            return true;
        if (top < 0 || top > documentSize().height())
            return false;  // Qt starts at the beginning
        auto point = std::lower_bound(restart_.begin(), restart_.end(), QFixed::fromReal(top),
                                      [](const RestartPoint& p, QFixed y) { return p.y < y; });
        if (point == restart_.end() || point == restart_.begin())
            return false;
        --point;
        const QTextBlock start = document()->findBlock(point->position);
        if (!start.isValid() || start == document()->begin())
            return false;
        // The items above the start end at most where the start begins, if
        // it is a paragraph of the root frame; a paragraph in a table is
        // drawn with its table.
        if (!inRootFlow(start))
            return true;
        const QTextBlock above = start.previous();
        return !above.isVisible() || !inRootFlow(above) || blockBoundingRect(above).bottom() > top;
    }

    // Qt stops drawing at the first item at or past the place in the text
    // of the first point below the area, and at the end it knew: early, if
    // that item still starts within the area. It also draws nothing below
    // the document's height at its pass, which paragraphs moved in place
    // may reach past.
    bool stopsEarly(qreal bottom) const
    {
        if (restart_.empty() || (moved_ && bottom > documentSize().height()))
            return true;
        auto point = std::lower_bound(restart_.begin(), restart_.end(), QFixed::fromReal(bottom),
                                      [](const RestartPoint& p, QFixed y) { return p.y < y; });
        const int stop = point == restart_.end() ? restart_.back().position : point->position;
        QTextBlock block = document()->findBlock(stop);
        if (!block.isValid())
            return false;
        // The item holding the stopping place is drawn if it starts before it.
        if (block.position() < stop) {
            QTextFrame* frame = document()->frameAt(block.position());
            if (frame != document()->rootFrame()) {
                while (frame->parentFrame() != document()->rootFrame())
                    frame = frame->parentFrame();
                if (frame->firstPosition() >= stop)
                    return frameBoundingRect(frame).top() < bottom;
                block = document()->findBlock(frame->lastPosition() + 1);
            } else {
                block = block.next();
            }
        }
        if (!block.isValid())
            return false;
        if (!inRootFlow(block))
            return true;
        return blockBoundingRect(block).top() < bottom;
    }

    // Puts the paragraph laid out again and every paragraph below it where
    // Qt's pass would put them, in the page view of a document with no
    // table below the paragraph.
    bool moveWhatFollows(const QTextBlock& block, const QTextBlockFormat& format)
    {
        QTextDocument* doc = document();
        if (doc->pageSize().height() <= 0)
            return false;
        const QList<QTextFrame*> frames = doc->rootFrame()->childFrames();
        if (!frames.isEmpty() && frames.last()->lastPosition() >= block.position())
            return false;

        Flow flow = rootFlow(doc);
        QTextLayout* layout = block.layout();
        flow.y = QFixed::fromReal(layout->position().y());
        startPage(flow);
        placeLines(layout, format, flow, true);
        if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
            flow.newPage();

        QTextBlockFormat previous = format;
        for (QTextBlock b = block.next(); b.isValid(); b = b.next()) {
            const QTextBlockFormat f = b.blockFormat();
            if (b.isVisible()) {
                QTextLayout* l = b.layout();
                if (!l || l->lineCount() == 0)
                    return false;  // Qt's pass puts everything back
                if (f.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
                    flow.newPage();
                const qreal margin = std::max(f.topMargin(), previous.bottomMargin());
                if (margin > 0)
                    flow.y += QFixed::fromReal(margin);
                // From here down nothing moves.
                if (flow.y.toReal() == l->position().y())
                    return true;
                const QFixed height = QFixed::fromReal(l->boundingRect().height());
                l->setPosition(QPointF(l->position().x(), flow.y.toReal()));
                placeLines(l, f, flow, flow.y + height > flow.pageBottom);
                if (f.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
                    flow.newPage();
            }
            previous = f;
        }
        return true;
    }

    QTimer settleTimer_;
    // The span, in the document's positions, of the edits laid out in place
    // that Qt's pass has not seen; -1 when none.
    int waitingFrom_ = -1;
    int waitingEnd_ = -1;
    // Qt's points as its last pass left them; empty if they could not be
    // worked out.
    std::vector<RestartPoint> restart_;
    bool copied_ = false;
    // Paragraphs below one laid out in place were moved.
    bool moved_ = false;
    // The number of paragraphs at the last change seen.
    int blockCount_ = 0;
};

EditLayout* of(const QTextDocument* doc)
{
    return doc ? dynamic_cast<EditLayout*>(doc->documentLayout()) : nullptr;
}

}  // namespace

void install(QTextDocument* doc)
{
    if (!of(doc))
        doc->setDocumentLayout(new EditLayout(doc));
}

void settle(QTextDocument* doc)
{
    if (EditLayout* layout = of(doc))
        layout->settle();
}

void restyle(QTextDocument* doc, const QTextBlock& block)
{
    EditLayout* layout = of(doc);
    if (layout && layout->layOutInPlace(block)) {
        layout->laidOutInPlace(block.position(), block.length(), block.length());
        return;
    }
    doc->markContentsDirty(block.position(), block.length());
}

Counts counts(const QTextDocument* doc)
{
    const EditLayout* layout = of(doc);
    return layout ? layout->counts_ : Counts{};
}

}  // namespace edit_layout
