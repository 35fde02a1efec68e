#pragma once

// The pages of a document, shared by printing, the preview and the PDF
// conversion: a copy of the document laid out on the sheet at the printable
// width, broken into pages by Qt's own text layout (a line never straddles
// two pages, a picture that does not fit in what is left of a page goes to
// the next), and painted one page at a time with the view's painting.

#include <QRectF>
#include <QSizeF>

#include <memory>
#include <vector>

class QPagedPaintDevice;
class QPainter;
class QTextDocument;

namespace tornelia {

struct PageSettings;

// The margins the page is laid out with, in twips.
struct PrintMargins {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// The preview and the printer take the centimetres of the page settings at
// 576 twips each; the page window, relaying the preview, takes 567 for the
// top and left margins. Both are kept as the program always had them.
inline constexpr double kPrintTwipsPerCm = 576.0;
PrintMargins marginsForPrint(const PageSettings& page);
PrintMargins marginsFromPageWindow(const PageSettings& page);

// The resolution at which the page is laid out: the screen's, so that a
// page broken here breaks as the page view breaks it.
double layoutDpi();

class PrintLayout {
public:
    PrintLayout(const QTextDocument& source, const PrintMargins& margins, int orientamento,
                double dpi = layoutDpi());
    ~PrintLayout();
    PrintLayout(const PrintLayout&) = delete;
    PrintLayout& operator=(const PrintLayout&) = delete;

    int pageCount() const { return int(starts_.size()); }
    // The document position of the first character of page (from 0); the
    // end of the text for the page after the last.
    int firstChar(int page) const;
    // The end of the text in document positions.
    int textEnd() const { return end_; }
    int orientamento() const { return orientamento_; }
    double dpi() const { return dpi_; }

    // The sheet and the text area on it, in layout pixels.
    QSizeF sheetSize() const { return sheet_; }
    QRectF textRect() const { return text_; }

    // Paints page (from 0) with the sheet's corner at the painter's origin,
    // one unit being one layout pixel; returns the first character of the
    // next page. The sheet is not filled: paper is white and the document's
    // background colour is not printed.
    int renderPage(QPainter& painter, int page) const;

    // The laid-out copy, hidden text made invisible and weightless.
    const QTextDocument& document() const { return *doc_; }

private:
    std::unique_ptr<QTextDocument> doc_;
    std::vector<int> starts_;
    QSizeF sheet_;
    QRectF text_;
    double dpi_ = 96;
    int end_ = 0;
    int orientamento_ = 1;
};

// Where PrintRichText puts the pages it makes: the preview adds a tab per
// page and draws it later at its zoom; a printer gets each page painted.
class PageSink {
public:
    virtual ~PageSink() = default;
    // Called once the sheet is known, before the first page.
    virtual void SizePreview(const PrintLayout&) {}
    // Page pageNumber (from 1) starts; false when it cannot be made, which
    // ends the run with the pages made so far.
    virtual bool AddPage(int pageNumber) = 0;
    // The painter of the page just added, or none when the page is drawn later.
    virtual QPainter* pagePainter() { return nullptr; }
};

// Lays the document out on the page and hands it page after page to sink.
// The margins are in twips. Returns the layout, which the preview keeps to
// draw its pages; pagesMade, when given, tells how many pages the sink took.
std::shared_ptr<const PrintLayout> PrintRichText(const PrintMargins& margins, int orientamento,
                                                 const QTextDocument& testo, PageSink& sink,
                                                 int* pagesMade = nullptr);

// Paints every page of layout on device (a printer, a PDF writer), copies
// times when the device cannot make copies itself. The device's page must
// already be the sheet, with no margins of its own. False when the device
// could not be painted on.
bool printPages(const PrintLayout& layout, QPagedPaintDevice& device, int copies = 1);

// The document as a PDF file at path, laid out with page. False when the
// file could not be written.
bool writePdf(const QTextDocument& testo, const PageSettings& page, const QString& path);

}  // namespace tornelia
