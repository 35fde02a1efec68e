// The preview window, printing to a PDF printer, and the page view's sheets
// against the printed pages.
#include "controls/editor_view.h"
#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "print/frm_preview.h"
#include "print/page_settings.h"
#include "print/print_job.h"
#include "print/print_layout.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QCoreApplication>
#include <QGraphicsTextItem>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolButton>
#include <QWheelEvent>

#include <numeric>

namespace tornelia {
namespace {

class Answers final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        said << QStringList{title, text, QString::number(buttons), QString::number(icon)}.join(" | ");
        return answer;
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QString answer = QStringLiteral("no");
    QStringList said;
};

void fill(QTextDocument& doc, int paragraphs)
{
    QTextCursor c(&doc);
    for (int i = 0; i < paragraphs; ++i) {
        if (i)
            c.insertBlock();
        QTextCharFormat f;
        f.setFontPointSize(9 + (i * 5) % 19);
        c.insertText(QStringLiteral("Paragrafo %1 ").arg(i).repeated(1 + i % 9), f);
    }
}

TEST(PreviewTest, TabsZoomStepsAndRelayout)
{
    QTextDocument doc;
    fill(doc, 160);
    Answers answers;
    FrmPreview preview(doc, PageSettings{}, answers);
    const PrintLayout upright(doc, marginsForPrint(PageSettings{}), 1);
    ASSERT_GE(upright.pageCount(), 3);

    QStringList tabs;
    for (int i = 0; i < preview.TabPreview()->count(); ++i)
        tabs << preview.TabPreview()->tabText(i);
    QStringList expected;
    for (int i = 1; i <= upright.pageCount(); ++i)
        expected << QStringLiteral("Pagina %1").arg(i);
    EXPECT_EQ(tabs, expected);
    EXPECT_EQ(preview.objectName(), "frmPreview");
    EXPECT_EQ(preview.windowTitle(), "Anteprima di stampa");

    QStringList percents;
    for (int i = 0; i < preview.cboPercent()->count(); ++i)
        percents << preview.cboPercent()->itemText(i);
    EXPECT_EQ(percents.first(), "30%");
    EXPECT_EQ(percents.last(), "200%");
    EXPECT_EQ(preview.cboPercent()->currentText(), "100%");

    // Down to the first step: the minus button goes off, the plus stays on.
    const QSize at100 = preview.picChild()->size();
    for (int i = 0; i < 10; ++i)
        preview.zoomOut()->click();
    EXPECT_EQ(preview.cboPercent()->currentText(), "30%");
    EXPECT_FALSE(preview.zoomOut()->isEnabled());
    EXPECT_TRUE(preview.zoomIn()->isEnabled());
    EXPECT_NEAR(preview.picChild()->width(), at100.width() * 0.3, 1.5);
    EXPECT_NEAR(preview.picChild()->height(), at100.height() * 0.3, 1.5);

    // The wheel steps the same list, up to the last step.
    for (int i = 0; i < 10; ++i) {
        QWheelEvent up(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, 120), Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(preview.picChild(), &up);
    }
    EXPECT_EQ(preview.cboPercent()->currentText(), "200%");
    EXPECT_FALSE(preview.zoomIn()->isEnabled());
    EXPECT_NEAR(preview.picChild()->width(), at100.width() * 2, 1.5);

    // The page is drawn when it is shown: the first page carries ink.
    preview.setPercent(100);
    const QImage shot = preview.picChild()->grab().toImage();
    int dark = 0;
    for (int y = 0; y < shot.height(); y += 2)
        for (int x = 0; x < shot.width(); x += 2)
            dark += qGray(shot.pixel(x, y)) < 128;
    EXPECT_GT(dark, 100);

    // The last page, then the page window turns the sheet: the preview follows.
    preview.PictureShow(upright.pageCount() - 1);
    EXPECT_FALSE(preview.nextPage()->isEnabled());
    EXPECT_TRUE(preview.previousPage()->isEnabled());
    preview.relayFromPageWindow(PageSettings{1, 1, 2, 2, 2});
    const PrintLayout wide(doc, marginsFromPageWindow(PageSettings{1, 1, 2, 2, 2}), 2);
    EXPECT_EQ(preview.pageCount(), wide.pageCount());
    EXPECT_GT(preview.pageCount(), upright.pageCount());
    EXPECT_GT(preview.picChild()->width(), preview.picChild()->height());
    EXPECT_EQ(preview.currentPage(), upright.pageCount() - 1);

    // Printing asks first; "no" ends it there.
    preview.PreviewPrints();
    EXPECT_EQ(answers.said, QStringList{"Stampa | Continuare con la stampa? | 2 | 4"});
}

int pdfPages(const QString& pdf, QString* size)
{
    QProcess p;
    p.start(QStringLiteral("pdfinfo"), {pdf});
    p.waitForFinished(30000);
    const QString out = QString::fromUtf8(p.readAllStandardOutput());
    static const QRegularExpression pages(QStringLiteral("Pages:\\s+(\\d+)"));
    static const QRegularExpression sz(QStringLiteral("Page size:\\s+(\\d+)(?:\\.\\d+)? x (\\d+)"));
    const auto s = sz.match(out);
    *size = s.hasMatch() ? s.captured(1) + u'x' + s.captured(2) : QString();
    const auto m = pages.match(out);
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

TEST(PreviewTest, ThePrinterGetsItsOrientationAndCopies)
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty())
        GTEST_SKIP() << "pdfinfo is not installed";
    QTextDocument doc;
    fill(doc, 120);
    QTemporaryDir dir;
    Answers answers;
    const PageSettings page;

    QPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer, 1);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath("a.pdf"));
    // What the person chose in the dialog: landscape, two copies.
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setCopyCount(2);
    ASSERT_TRUE(stampaSuStampante(printer, doc, page, answers));
    const PrintLayout wide(doc, marginsForPrint(page), 2);
    QString size;
    EXPECT_EQ(pdfPages(dir.filePath("a.pdf"), &size), 2 * wide.pageCount());
    EXPECT_EQ(size, "842x595");
    EXPECT_TRUE(answers.said.isEmpty());

    // A file that cannot be written: said, not lost in silence.
    printer.setOutputFileName(dir.filePath("manca/a.pdf"));
    EXPECT_FALSE(stampaSuStampante(printer, doc, page, answers));
    ASSERT_EQ(answers.said.size(), 1);
    EXPECT_TRUE(answers.said[0].startsWith("Stampa | Impossibile stampare su ")) << answers.said[0].toStdString();
}

// The page view breaks the text where the printed copy does: as many
// sheets as pages, and each page's first character on its own sheet.
TEST(PageViewTest, SheetsBreakWhereThePrintedPagesBreak)
{
    RichTextSurface surface;
    fill(*surface.document(), 220);
    EditorView view(surface);
    view.resize(900, 700);
    PageLayout page;
    page.left = 1134;
    page.right = 1134;
    page.top = 567;
    page.bottom = 567;
    page.sheetHeight = 16839.9;
    page.textWidth = 11907 - page.left - page.right;
    view.setPageLayout(page);

    const PrintLayout printed(*surface.document(), PrintMargins{page.left, page.top, page.right, page.bottom}, 1,
                              view.logicalDpiY());
    ASSERT_GE(printed.pageCount(), 3);
    EXPECT_EQ(view.sheetCount(), printed.pageCount());
    QAbstractTextDocumentLayout* layout = surface.document()->documentLayout();
    std::vector<int> sheetOf;
    for (int p = 0; p < printed.pageCount(); ++p) {
        const QTextBlock b = surface.document()->findBlock(printed.firstChar(p));
        const QTextLine line = b.layout()->lineForTextPosition(printed.firstChar(p) - b.position());
        ASSERT_TRUE(line.isValid());
        const double y = layout->blockBoundingRect(b).top() + line.y();
        sheetOf.push_back(int(y / view.sheetPitch()));
    }
    std::vector<int> expected(size_t(printed.pageCount()));
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(sheetOf, expected);

    // Back to the normal view: one long sheet of text again.
    view.setPageLayout(std::nullopt);
    EXPECT_EQ(view.sheetCount(), 0);
    EXPECT_LT(surface.document()->pageSize().height(), 0);
    EXPECT_EQ(surface.document()->pageCount(), 1);
}

}  // namespace
}  // namespace tornelia
