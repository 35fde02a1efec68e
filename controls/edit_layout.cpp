#include "controls/edit_layout.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTimer>
#include <QtGui/private/qtextdocumentlayout_p.h>

#include <algorithm>
#include <vector>

namespace edit_layout {

namespace {

// The person has stopped typing: the pass over the document, which took the
// time of a key before, runs now and is not felt.
constexpr int kSettleAfterMs = 400;

// Larger edits are pastes and the like, which may move anything.
constexpr int kLargestInPlace = 64;

class EditLayout : public QTextDocumentLayout {
public:
    explicit EditLayout(QTextDocument* doc) : QTextDocumentLayout(doc)
    {
        settleTimer_.setSingleShot(true);
        settleTimer_.setInterval(kSettleAfterMs);
        QObject::connect(&settleTimer_, &QTimer::timeout, this, [this] { settle(); });
    }

    // The pass over the document for the edits laid out in place, as one
    // edit that spans them all.
    void settle()
    {
        settleTimer_.stop();
        if (waitingFrom_ < 0)
            return;
        const int from = waitingFrom_;
        const int length = std::max(1, std::min(waitingEnd_, document()->characterCount()) - from);
        waitingFrom_ = waitingEnd_ = -1;
        ++counts_.whole;
        QTextDocumentLayout::documentChanged(from, length, length);
    }

    Counts counts_;

protected:
    void documentChanged(int from, int oldLength, int length) override
    {
        if (layOutInPlace(from, oldLength, length)) {
            ++counts_.inPlace;
            wait(from, oldLength, length);
            settleTimer_.start();
            return;
        }
        // Qt's pass starts from the last point it kept above the edit; the
        // points below the paragraphs laid out in place stand where those
        // paragraphs ended before. So the pass starts above them all.
        if (waitingFrom_ >= 0) {
            wait(from, oldLength, length);
            const int grownBy = (waitingEnd_ - waitingFrom_) - length;
            oldLength += std::max(0, grownBy);
            length = waitingEnd_ - waitingFrom_;
            from = waitingFrom_;
            waitingFrom_ = waitingEnd_ = -1;
            settleTimer_.stop();
        }
        ++counts_.whole;
        QTextDocumentLayout::documentChanged(from, oldLength, length);
    }

private:
    struct Line {
        QPointF position;
        qreal width;
        qreal ascent;
        qreal descent;
        qreal leading;
    };

    // Widens the span waiting for Qt's pass by an edit, in the positions
    // after the edit.
    void wait(int from, int oldLength, int length)
    {
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

    // Lays out the one paragraph an edit falls in, if nothing else can move:
    // the paragraph keeps its lines' number, widths and heights. Qt lays a
    // paragraph out on the lines it gives it, whose widths, places and page
    // breaks come from what is above; with the same heights those are the
    // lines it had, so the result is the one Qt's pass would give.
    bool layOutInPlace(int from, int oldLength, int length)
    {
        // A deletion moves the points Qt restarts its pass from past their
        // paragraph's beginning, where Qt would start drawing below the
        // first lines on screen; only insertions are laid out in place.
        if (length <= oldLength || length > kLargestInPlace)
            return false;
        QTextDocument* doc = document();
        // Not while a long document is still being laid out in slices, nor
        // in a document that does not wrap, whose width follows its longest
        // line.
        if (layoutStatus() != 100 || doc->pageSize().width() <= 0)
            return false;
        const QTextBlock block = doc->findBlock(from);
        if (!block.isValid() || !block.isVisible() || from + length >= block.position() + block.length())
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

        std::vector<Line> lines;
        lines.reserve(size_t(layout->lineCount()));
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine l = layout->lineAt(i);
            lines.push_back({l.position(), l.width(), l.ascent(), l.descent(), l.leading()});
        }

        layout->beginLayout();
        bool same = true;
        size_t n = 0;
        for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine(), ++n) {
            if (n >= lines.size()) {
                same = false;
                break;
            }
            const Line& was = lines[n];
            line.setLeadingIncluded(true);
            line.setLineWidth(was.width);
            line.setPosition(was.position);
            // A word wider than the line makes Qt break it anywhere.
            same = line.ascent() == was.ascent && line.descent() == was.descent && line.leading() == was.leading &&
                   line.naturalTextWidth() <= was.width;
            if (!same)
                break;
        }
        layout->endLayout();
        if (!same || n != lines.size())
            return false;  // Qt's pass lays the paragraph out again anyway

        const QRectF box = blockBoundingRect(block);
        emit update(QRectF(0, box.top(), std::max(box.right(), documentSize().width()) + 1, box.height()));
        return true;
    }

    QTimer settleTimer_;
    // The span, in the document's positions, of the edits laid out in place
    // that Qt's pass has not seen; -1 when none.
    int waitingFrom_ = -1;
    int waitingEnd_ = -1;
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

Counts counts(const QTextDocument* doc)
{
    const EditLayout* layout = of(doc);
    return layout ? layout->counts_ : Counts{};
}

}  // namespace edit_layout
