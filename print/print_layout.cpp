#include "print/print_layout.h"

#include "controls/format_painter.h"
#include "core/rtf_table.h"
#include "core/text_format.h"
#include "print/page_settings.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace tornelia {

namespace {

// Stands in for each hidden character on the page: no width, no glyph, no
// break opportunity, so the characters around it stay where they were and
// every position of the copy is the position of the original.
constexpr char16_t kWeightless = 0x2060;

void hideHiddenText(QTextDocument& doc)
{
    struct Range {
        int from;
        int length;
        QTextCharFormat format;
    };
    std::vector<Range> hidden;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            QTextCharFormat f = frag.charFormat();
            if (!isHidden(f))
                continue;
            // A hidden picture gives way to a weightless mark as well.
            f.clearProperty(QTextFormat::ObjectType);
            f.clearProperty(QTextFormat::ImageName);
            hidden.push_back({frag.position(), frag.length(), f});
        }
    }
    QTextCursor c(&doc);
    for (const Range& r : hidden) {
        c.setPosition(r.from);
        c.setPosition(r.from + r.length, QTextCursor::KeepAnchor);
        c.insertText(QString(r.length, QChar(kWeightless)), r.format);
    }
}

// The light grid a table with no borders of its own is shown with helps
// while editing; on paper the table has no lines, as its file says.
void dropEditingGrids(QTextFrame* frame)
{
    for (QTextFrame* child : frame->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(child); table && table->format().boolProperty(prop::TableGridOnly)) {
            QTextTableFormat f = table->format();
            f.setBorder(0);
            f.setBorderStyle(QTextFrameFormat::BorderStyle_None);
            table->setFormat(f);
        }
        dropEditingGrids(child);
    }
}

}  // namespace

PrintMargins marginsForPrint(const PageSettings& page)
{
    return {page.MargineSin * kPrintTwipsPerCm, page.MargineSup * kPrintTwipsPerCm,
            page.MargineDes * kPrintTwipsPerCm, page.MargineInf * kPrintTwipsPerCm};
}

PrintMargins marginsFromPageWindow(const PageSettings& page)
{
    return {page.MargineSin * kTwipsPerCm, page.MargineSup * kTwipsPerCm, page.MargineDes * kPrintTwipsPerCm,
            page.MargineInf * kPrintTwipsPerCm};
}

double layoutDpi()
{
    if (const QScreen* s = QGuiApplication::primaryScreen())
        return s->logicalDotsPerInchY();
    return 96.0;
}

PrintLayout::PrintLayout(const QTextDocument& source, const PrintMargins& margins, int orientamento, double dpi)
    : doc_(source.clone()), dpi_(dpi > 0 ? dpi : 96.0), orientamento_(orientamento == 2 ? 2 : 1)
{
    const double perTwip = dpi_ / 1440.0;
    sheet_ = QSizeF(sheetWidthTwips(orientamento_) * perTwip, sheetHeightTwips(orientamento_) * perTwip);
    // Margins wider than the sheet leave a narrow column and a short page,
    // never none, so the loop below always moves on.
    const double minSide = 0.5 * dpi_ / 2.54;
    double left = std::max(0.0, margins.left * perTwip);
    double right = std::max(0.0, margins.right * perTwip);
    double top = std::max(0.0, margins.top * perTwip);
    double bottom = std::max(0.0, margins.bottom * perTwip);
    if (left + right > sheet_.width() - minSide) {
        const double k = (sheet_.width() - minSide) / (left + right);
        left *= k;
        right *= k;
    }
    if (top + bottom > sheet_.height() - minSide) {
        const double k = (sheet_.height() - minSide) / (top + bottom);
        top *= k;
        bottom *= k;
    }
    // Whole pixels of line, as the page view wraps: the right margin takes the rest.
    right = sheet_.width() - left - std::max(1.0, std::floor(sheet_.width() - left - right));
    text_ = QRectF(left, top, sheet_.width() - left - right, sheet_.height() - top - bottom);

    hideHiddenText(*doc_);
    dropEditingGrids(doc_->rootFrame());
    // The root frame's margins stand on every page of a paginated layout.
    QTextFrameFormat root = doc_->rootFrame()->frameFormat();
    root.setLeftMargin(left);
    root.setRightMargin(right);
    root.setTopMargin(top);
    root.setBottomMargin(bottom);
    root.setPadding(0);
    root.setBorder(0);
    doc_->rootFrame()->setFrameFormat(root);
    doc_->setPageSize(sheet_);
    for (QTextBlock b = doc_->begin(); b.isValid(); b = b.next())
        b.layout()->setFormats(FormatPainter::displayFormats(b));
    doc_->markContentsDirty(0, doc_->characterCount());
    end_ = std::max(0, doc_->characterCount() - 1);

    // Each line belongs to the page its top stands on; a page starts at the
    // first line that stands on it or after it.
    QAbstractTextDocumentLayout* layout = doc_->documentLayout();
    const double h = sheet_.height();
    int pages = 1;
    std::vector<std::pair<int, int>> lines;  // position, page
    for (QTextBlock b = doc_->begin(); b.isValid(); b = b.next()) {
        const QTextLayout* tl = b.layout();
        if (!tl || !b.isVisible())
            continue;
        const double top0 = layout->blockBoundingRect(b).top();
        for (int n = 0; n < tl->lineCount(); ++n) {
            const QTextLine line = tl->lineAt(n);
            const int page = std::max(0, int(std::floor((top0 + line.y() + 0.01) / h)));
            lines.emplace_back(b.position() + line.textStart(), page);
            pages = std::max(pages, page + 1);
        }
    }
    starts_.assign(size_t(pages), end_);
    starts_[0] = 0;
    int next = 1;
    for (const auto& [pos, page] : lines) {
        while (next < pages && next <= page)
            starts_[size_t(next++)] = pos;
    }
}

PrintLayout::~PrintLayout() = default;

int PrintLayout::firstChar(int page) const
{
    if (page < 0)
        return 0;
    if (page >= pageCount())
        return end_;
    return starts_[size_t(page)];
}

int PrintLayout::renderPage(QPainter& painter, int page) const
{
    if (page < 0 || page >= pageCount())
        return end_;
    const double h = sheet_.height();
    const QRectF onLayout(0, page * h, sheet_.width(), h);
    painter.save();
    painter.setClipRect(QRectF(QPointF(0, 0), sheet_), Qt::IntersectClip);
    painter.translate(0, -page * h);
    QAbstractTextDocumentLayout* docLayout = doc_->documentLayout();
    QRectF clip = onLayout;
    // A paragraph that began on the page before: Qt's block painting would
    // draw the line above the page as well (clipped away, but still in a
    // PDF's text), so its lines on this page are drawn here one by one and
    // the rest of the page starts below it.
    const QTextBlock straddling = doc_->findBlock(firstChar(page));
    if (page > 0 && straddling.isValid() && straddling.position() < firstChar(page) &&
        doc_->rootFrame() == doc_->frameAt(straddling.position()) && straddling.layout()) {
        const QTextLayout* tl = straddling.layout();
        const QRectF box = docLayout->blockBoundingRect(straddling);
        const QPointF origin = box.topLeft() - tl->boundingRect().topLeft();
        painter.save();
        painter.setPen(Qt::black);
        for (int n = 0; n < tl->lineCount(); ++n) {
            const QTextLine line = tl->lineAt(n);
            const double top = origin.y() + line.y();
            if (top >= onLayout.top() - 0.01 && top < onLayout.bottom())
                line.draw(&painter, origin);
        }
        painter.restore();
        clip.setTop(std::min(onLayout.bottom(), box.bottom() + 0.01));
    }
    QAbstractTextDocumentLayout::PaintContext ctx;
    ctx.clip = clip;
    ctx.palette.setColor(QPalette::Text, Qt::black);
    painter.save();
    FormatPainter::keepOutListMarkers(&painter, doc_.get(), onLayout);
    docLayout->draw(&painter, ctx);
    painter.restore();
    FormatPainter::paintOverlay(&painter, doc_.get(), onLayout);
    painter.restore();
    return firstChar(page + 1);
}

std::shared_ptr<const PrintLayout> PrintRichText(const PrintMargins& margins, int orientamento,
                                                 const QTextDocument& testo, PageSink& sink, int* pagesMade)
{
    auto layout = std::make_shared<const PrintLayout>(testo, margins, orientamento);
    sink.SizePreview(*layout);
    int made = 0;
    // Page after page: each step renders one page and learns where the next
    // one starts, until the pages of the layout are all out.
    for (int page = 1;; ++page) {
        if (!sink.AddPage(page))
            break;
        ++made;
        if (QPainter* p = sink.pagePainter())
            layout->renderPage(*p, page - 1);
        if (page >= layout->pageCount())
            break;
    }
    if (pagesMade)
        *pagesMade = made;
    return layout;
}

bool printPages(const PrintLayout& layout, QPagedPaintDevice& device, int copies)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    const double scale = device.logicalDpiX() / layout.dpi();
    for (int copy = 0; copy < std::max(1, copies); ++copy) {
        if (copy > 0 && !device.newPage())
            break;
        for (int page = 0; page < layout.pageCount(); ++page) {
            if (page > 0 && !device.newPage())
                return painter.end() && false;
            painter.resetTransform();
            painter.scale(scale, scale);
            layout.renderPage(painter, page);
        }
    }
    return painter.end();
}

bool writePdf(const QTextDocument& testo, const PageSettings& page, const QString& path)
{
    const PrintLayout layout(testo, marginsForPrint(page), page.Orientamento);
    QPdfWriter pdf(path);
    pdf.setResolution(1200);
    pdf.setCreator(QStringLiteral("Tornelia"));
    const QPageLayout sheet(QPageSize(QPageSize::A4),
                            layout.orientamento() == 2 ? QPageLayout::Landscape : QPageLayout::Portrait,
                            QMarginsF(0, 0, 0, 0));
    if (!pdf.setPageLayout(sheet))
        return false;
    return printPages(layout, pdf);
}

}  // namespace tornelia
