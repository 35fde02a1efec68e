// Pagination: generated documents laid out on the page and painted into a
// recording device, page by page; what each page draws is compared with the
// text the layout says the page holds.
#include "core/rich_text_surface.h"
#include "print/page_settings.h"
#include "print/print_layout.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextTable>
#include <QUrl>

#include <functional>

namespace tornelia {
namespace {

constexpr char16_t kWeightless = 0x2060;

struct Drawn {
    QPointF at;  // the baseline's start, or a picture's top left
    QString text;
    QRectF picture;  // set for pictures
};

// Remembers the text and pictures drawn, where the painter put them.
class RecordingEngine final : public QPaintEngine {
public:
    RecordingEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& s) override
    {
        if (s.state() & DirtyTransform)
            transform_ = s.transform();
    }
    void drawPixmap(const QRectF& r, const QPixmap&, const QRectF&) override
    {
        drawn.push_back({transform_.map(r.topLeft()), {}, transform_.mapRect(r)});
    }
    void drawImage(const QRectF& r, const QImage&, const QRectF&, Qt::ImageConversionFlags) override
    {
        drawn.push_back({transform_.map(r.topLeft()), {}, transform_.mapRect(r)});
    }
    void drawTextItem(const QPointF& p, const QTextItem& ti) override
    {
        QString t = ti.text();
        t.remove(QChar(kWeightless));
        if (!t.trimmed().isEmpty())
            drawn.push_back({transform_.map(p), t, {}});
    }
    void drawPath(const QPainterPath&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawLines(const QLineF*, int) override {}
    void drawRects(const QRectF*, int) override {}
    Type type() const override { return User; }

    std::vector<Drawn> drawn;

private:
    QTransform transform_;
};

class RecordingDevice final : public QPaintDevice {
public:
    QPaintEngine* paintEngine() const override { return &engine; }
    int metric(PaintDeviceMetric m) const override
    {
        switch (m) {
        case PdmWidth: return 2000;
        case PdmHeight: return 2000;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return 96;
        case PdmDepth: return 32;
        case PdmNumColors: return 1 << 24;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return int(devicePixelRatioFScale());
        case PdmWidthMM:
        case PdmHeightMM: return 500;
        default: return 0;
        }
    }
    mutable RecordingEngine engine;
};

// One recording per page.
class RecordingSink final : public PageSink {
public:
    bool AddPage(int pageNumber) override
    {
        EXPECT_EQ(pageNumber, int(pages.size()) + 1);
        pages.push_back(std::make_unique<RecordingDevice>());
        painter_.reset();
        painter_ = std::make_unique<QPainter>(pages.back().get());
        return true;
    }
    QPainter* pagePainter() override { return painter_.get(); }
    void finish() { painter_.reset(); }

    std::vector<std::unique_ptr<RecordingDevice>> pages;

private:
    std::unique_ptr<QPainter> painter_;
};

QString squeezed(QString s)
{
    s.remove(QChar(kWeightless));
    s.replace(QChar::ParagraphSeparator, u' ');
    s.replace(QChar::LineSeparator, u' ');
    s.replace(QChar::ObjectReplacementCharacter, u' ');
    return s.simplified().remove(u' ');
}

// The document's text from a to b with its hidden characters left out.
QString visibleText(const QTextDocument& doc, int a, int b)
{
    QString out;
    for (QTextBlock bl = doc.begin(); bl.isValid(); bl = bl.next()) {
        for (auto it = bl.begin(); !it.atEnd(); ++it) {
            const QTextFragment f = it.fragment();
            if (f.charFormat().boolProperty(prop::Hidden))
                continue;
            const int s = std::max(a, f.position());
            const int e = std::min(b, f.position() + f.length());
            if (s < e)
                out += f.text().mid(s - f.position(), e - s);
        }
        out += u' ';
    }
    return out;
}

struct Result {
    std::shared_ptr<const PrintLayout> layout;
    std::vector<std::vector<Drawn>> pages;
};

Result paginate(const QTextDocument& doc, const PageSettings& page = {})
{
    RecordingSink sink;
    int made = 0;
    Result r;
    r.layout = PrintRichText(marginsForPrint(page), page.Orientamento, doc, sink, &made);
    sink.finish();
    EXPECT_EQ(made, r.layout->pageCount());
    for (auto& d : sink.pages)
        r.pages.push_back(d->engine.drawn);
    return r;
}

QString pageText(const std::vector<Drawn>& drawn)
{
    QString s;
    for (const Drawn& d : drawn)
        s += d.text;
    return squeezed(s);
}

// Every page draws exactly the text between its first character and the
// next page's, all of it inside the text area; together the pages draw the
// whole visible text once, in order.
void expectPagesHoldTheirText(const QTextDocument& doc, const Result& r, const char* what)
{
    SCOPED_TRACE(what);
    const PrintLayout& l = *r.layout;
    ASSERT_EQ(int(r.pages.size()), l.pageCount());
    QString all;
    for (int p = 0; p < l.pageCount(); ++p) {
        SCOPED_TRACE(p);
        EXPECT_EQ(pageText(r.pages[p]), squeezed(visibleText(doc, l.firstChar(p), l.firstChar(p + 1))));
        if (p > 0) {
            EXPECT_LT(l.firstChar(p - 1), l.firstChar(p));
        }
        for (const Drawn& d : r.pages[p]) {
            const QRectF box = d.picture.isNull() ? QRectF(d.at, QSizeF(1, 1)) : d.picture;
            EXPECT_GE(box.top(), l.textRect().top() - 0.5) << d.text.toStdString();
            EXPECT_LE(box.bottom(), l.textRect().bottom() + 0.5) << d.text.toStdString();
        }
        all += pageText(r.pages[p]);
    }
    EXPECT_EQ(all, squeezed(visibleText(doc, 0, l.textEnd())));
    EXPECT_EQ(l.firstChar(l.pageCount()), l.textEnd());
}

QString numberedLine(int i)
{
    return QStringLiteral("riga%1 ").arg(i, 4, 10, QChar(u'0'));
}

TEST(PrintLayoutTest, PagesDrawExactlyTheirTextAcrossEveryBreak)
{
    struct Case {
        const char* name;
        std::function<void(QTextCursor&)> fill;
        int minPages;
    };
    const std::vector<Case> cases = {
        {"plain lines",
         [](QTextCursor& c) {
             for (int i = 0; i < 200; ++i) {
                 if (i)
                     c.insertBlock();
                 c.insertText(numberedLine(i));
             }
         },
         3},
        {"long paragraphs",
         [](QTextCursor& c) {
             for (int p = 0; p < 12; ++p) {
                 if (p)
                     c.insertBlock();
                 QString text;
                 for (int w = 0; w < 400; ++w)
                     text += QStringLiteral("p%1w%2 ").arg(p).arg(w);
                 c.insertText(text);
             }
         },
         4},
        {"mixed sizes and lines broken inside paragraphs",
         [](QTextCursor& c) {
             for (int i = 0; i < 150; ++i) {
                 if (i)
                     c.insertBlock();
                 QTextCharFormat f;
                 f.setFontPointSize(8 + (i * 7) % 33);
                 c.insertText(numberedLine(i), f);
                 if (i % 5 == 0)
                     c.insertText(QString(QChar::LineSeparator) + QStringLiteral("seguito%1").arg(i), f);
             }
         },
         5},
        {"hidden text everywhere",
         [](QTextCursor& c) {
             QTextCharFormat hidden;
             hidden.setProperty(prop::Hidden, true);
             for (int i = 0; i < 180; ++i) {
                 if (i)
                     c.insertBlock();
                 c.insertText(numberedLine(i), QTextCharFormat());
                 c.insertText(QStringLiteral("NASCOSTO "), hidden);
                 if (i % 7 == 0) {
                     c.insertBlock();
                     c.insertText(QStringLiteral("NASCOSTO paragrafo intero"), hidden);
                 }
                 c.insertText(QStringLiteral("fine%1").arg(i), QTextCharFormat());
             }
         },
         3},
    };
    for (const Case& k : cases) {
        QTextDocument doc;
        QTextCursor c(&doc);
        k.fill(c);
        const Result r = paginate(doc);
        EXPECT_GE(r.layout->pageCount(), k.minPages) << k.name;
        expectPagesHoldTheirText(doc, r, k.name);
        for (const auto& page : r.pages)
            for (const Drawn& d : page)
                EXPECT_FALSE(d.text.contains(QStringLiteral("NASCOSTO"))) << k.name;
    }
}

TEST(PrintLayoutTest, EmptyAndOneCharacterDocumentsMakeOnePage)
{
    QTextDocument empty;
    Result r = paginate(empty);
    EXPECT_EQ(r.layout->pageCount(), 1);
    EXPECT_TRUE(r.pages.at(0).empty());
    EXPECT_EQ(r.layout->firstChar(0), 0);

    QTextDocument one;
    one.setPlainText(QStringLiteral("x"));
    r = paginate(one);
    ASSERT_EQ(r.layout->pageCount(), 1);
    EXPECT_EQ(pageText(r.pages[0]), QStringLiteral("x"));
    EXPECT_EQ(r.layout->firstChar(1), 1);

    // Hidden text alone is a page with nothing on it.
    QTextDocument hiddenOnly;
    QTextCursor c(&hiddenOnly);
    QTextCharFormat hidden;
    hidden.setProperty(prop::Hidden, true);
    c.insertText(QStringLiteral("NASCOSTO"), hidden);
    r = paginate(hiddenOnly);
    ASSERT_EQ(r.layout->pageCount(), 1);
    EXPECT_EQ(pageText(r.pages[0]), QString());
}

TEST(PrintLayoutTest, APictureThatDoesNotFitMovesWholeToTheNextPage)
{
    QTextDocument doc;
    QImage picture(300, 500, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    doc.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("img1")), picture);
    QTextCursor c(&doc);
    // Enough lines to leave less than the picture's height on the first page.
    for (int i = 0; i < 45; ++i) {
        c.insertText(numberedLine(i));
        c.insertBlock();
    }
    QTextImageFormat f;
    f.setName(QStringLiteral("img1"));
    f.setWidth(300);
    f.setHeight(500);
    c.insertImage(f);
    c.insertBlock();
    c.insertText(QStringLiteral("dopo"));

    const Result r = paginate(doc);
    ASSERT_EQ(r.layout->pageCount(), 2);
    expectPagesHoldTheirText(doc, r, "picture");
    int pictures = 0;
    for (int p = 0; p < 2; ++p)
        for (const Drawn& d : r.pages[p])
            if (!d.picture.isNull()) {
                ++pictures;
                EXPECT_EQ(p, 1);
                EXPECT_NEAR(d.picture.height(), 500, 1);
            }
    EXPECT_EQ(pictures, 1);
    // The page starts at the picture, which stands on it first.
    EXPECT_EQ(doc.characterAt(r.layout->firstChar(1)), QChar::ObjectReplacementCharacter);
}

TEST(PrintLayoutTest, MarginsAndOrientationShapeTheTextArea)
{
    QTextDocument doc;
    doc.setPlainText(QStringLiteral("x"));
    const double dpi = 96;
    const PrintLayout upright(doc, marginsForPrint(PageSettings{}), 1, dpi);
    const double px = dpi / 1440.0;
    EXPECT_NEAR(upright.sheetSize().width(), 11907 * px, 0.01);
    EXPECT_NEAR(upright.sheetSize().height(), 16839.9 * px, 0.01);
    // 1 cm top and bottom, 2 cm at the sides, at 576 twips the centimetre.
    EXPECT_NEAR(upright.textRect().left(), 1152 * px, 0.01);
    EXPECT_NEAR(upright.textRect().top(), 576 * px, 0.01);
    EXPECT_NEAR(upright.textRect().right(), (11907 - 1152) * px, 1.0);
    EXPECT_NEAR(upright.textRect().bottom(), (16839.9 - 576) * px, 0.01);

    const PrintLayout wide(doc, marginsFromPageWindow(PageSettings{3, 4, 5, 6, 2}), 2, dpi);
    EXPECT_NEAR(wide.sheetSize().width(), 16839.9 * px, 0.01);
    EXPECT_NEAR(wide.textRect().left(), 5 * 567 * px, 0.01);
    EXPECT_NEAR(wide.textRect().top(), 3 * 567 * px, 0.01);
    EXPECT_NEAR(wide.textRect().right(), (16839.9 - 6 * 576) * px, 1.0);
    EXPECT_NEAR(wide.textRect().bottom(), (11907 - 4 * 576) * px, 0.01);

    // Margins larger than the sheet still leave a column to print in.
    const PrintLayout silly(doc, marginsForPrint(PageSettings{20, 20, 15, 15, 1}), 1, dpi);
    EXPECT_GT(silly.textRect().width(), 0);
    EXPECT_GT(silly.textRect().height(), 0);
    EXPECT_EQ(silly.pageCount(), 1);
}

// A table the file gave no borders is shown with a light grid to edit it
// by; the page has no lines there. A table with borders keeps them.
TEST(PrintLayoutTest, TheEditingGridOfABorderlessTableIsNotPrinted)
{
    RichTextSurface s;
    s.setTextRTF(QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard Top\\par"
        "\\trowd\\trgaph108\\cellx2000\\cellx4000\\pard\\intbl a\\cell b\\cell\\row"
        "\\pard Mid\\par"
        "\\trowd\\trgaph108\\clbrdrb\\brdrs\\brdrw30\\cellx2000\\cellx4000\\pard\\intbl c\\cell d\\cell\\row\\pard End\\par}"));
    auto borders = [](const QTextDocument& doc) {
        QStringList out;
        for (QTextFrame* f : doc.rootFrame()->childFrames())
            if (auto* t = qobject_cast<QTextTable*>(f))
                out << QStringLiteral("%1/%2").arg(t->format().border()).arg(t->cellAt(0, 0).format().toTableCellFormat().bottomBorder());
        return out.join(u' ').toStdString();
    };
    EXPECT_EQ(borders(*s.document()), "1/0 0/2");
    const PrintLayout layout(*s.document(), marginsForPrint(PageSettings{}), 1, 96);
    EXPECT_EQ(borders(layout.document()), "0/0 0/2");
    EXPECT_EQ(borders(*s.document()), "1/0 0/2");

    QImage page(layout.sheetSize().toSize(), QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    layout.renderPage(painter, 0);
    painter.end();
    // Grid lines: three pixels of the grid's grey in a row, across or down
    // (a letter's smoothed edge makes a stray one).
    const auto grey = [&page](int x, int y) {
        return x >= 0 && y >= 0 && x < page.width() && y < page.height() && page.pixel(x, y) == qRgb(192, 192, 192);
    };
    int lines = 0;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x)
            lines += grey(x, y) && ((grey(x - 1, y) && grey(x + 1, y)) || (grey(x, y - 1) && grey(x, y + 1)));
    EXPECT_EQ(lines, 0);
}

}  // namespace
}  // namespace tornelia
