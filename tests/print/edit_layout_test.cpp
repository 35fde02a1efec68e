// Keys laid out in place in the editor: whatever mix of keys, the lines and
// what is drawn are those of Qt's pass over the whole document, in the
// normal view and on the sheets of the page view.

#include "controls/edit_layout.h"
#include "controls/editor_view.h"
#include "core/rich_text_surface.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <string>
#include <vector>

namespace tornelia {
namespace {

// Paragraphs of every kind the layout treats apart: sizes that change the
// line height, centred text, a first-line indent, spaced lines, empty
// paragraphs, and a table with paragraphs right before and after it.
void fill(QTextDocument& doc)
{
    QTextCursor c(&doc);
    for (int i = 0; i < 160; ++i) {
        if (i)
            c.insertBlock();
        QTextBlockFormat b;
        if (i % 7 == 3)
            b.setAlignment(Qt::AlignHCenter);
        if (i % 11 == 5)
            b.setTextIndent(40);
        if (i % 13 == 6)
            b.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
        c.setBlockFormat(b);
        QTextCharFormat f;
        f.setFontPointSize(9 + (i * 5) % 15);
        if (i % 17 != 9)
            c.insertText(QStringLiteral("Parola %1 ").arg(i).repeated(1 + i % 23), f);
        if (i == 80) {
            c.insertBlock();
            QTextTable* table = c.insertTable(3, 3);
            for (int cell = 0; cell < 9; ++cell)
                table->cellAt(cell / 3, cell % 3).firstCursorPosition().insertText(QStringLiteral("cella %1").arg(cell));
            c.movePosition(QTextCursor::End);
        }
    }
}

// Every line of every paragraph where the layout put it.
std::vector<std::string> lines(QTextDocument& doc)
{
    std::vector<std::string> out;
    QAbstractTextDocumentLayout* layout = doc.documentLayout();
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const QRectF box = layout->blockBoundingRect(b);
        for (int i = 0; i < b.layout()->lineCount(); ++i) {
            const QTextLine l = b.layout()->lineAt(i);
            out.push_back(QStringLiteral("%1.%2 [%3+%4] at %5,%6 %7x%8")
                              .arg(b.blockNumber())
                              .arg(i)
                              .arg(l.textStart())
                              .arg(l.textLength())
                              .arg(box.left() + l.x())
                              .arg(box.top() + l.y())
                              .arg(l.width())
                              .arg(l.height())
                              .toStdString());
        }
    }
    return out;
}

// The document drawn in strips: down its whole height, and from a little above
// each paragraph to just above its end. Each strip is drawn from and to the
// paragraphs the layout finds for its top and bottom, as a repaint of part
// of the window is.
std::vector<QImage> strips(QTextDocument& doc, qreal height)
{
    std::vector<QImage> out;
    const QSizeF size(doc.documentLayout()->documentSize().width(), height);
    const auto strip = [&](qreal top, qreal height) {
        QImage img(int(size.width()) + 1, int(height), QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter p(&img);
        p.translate(0, -top);
        doc.drawContents(&p, QRectF(0, top, size.width(), height));
        p.end();
        out.push_back(img);
    };
    for (qreal top = 0; top < size.height(); top += 331)
        strip(top, 331);
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const QRectF box = doc.documentLayout()->blockBoundingRect(b);
        strip(box.top() - 10, std::max<qreal>(box.height() + 9, 1));
    }
    return out;
}

void type(RichTextSurface& surface, int at, const QString& keys)
{
    surface.setSelStart(at);
    for (const QChar k : keys) {
        if (k == QLatin1Char('\b')) {
            surface.setSelStart(surface.SelStart() - 1);
            surface.setSelLength(1);
            surface.setSelText(QString());
        } else {
            surface.typeText(QString(k));
        }
        QCoreApplication::processEvents();
    }
}

int startOf(QTextDocument& doc, int paragraph, int into)
{
    return doc.findBlockByNumber(paragraph).position() + into;
}

// The lines and the strips as they stand, then after Qt's pass over every
// paragraph from the top: the same.
void expectAsAfterAWholePass(QTextDocument& doc)
{
    const std::vector<std::string> typed = lines(doc);
    // Down to below the end, wherever the paragraphs moved in place put it.
    const qreal height = doc.documentLayout()->documentSize().height() + 400;
    const std::vector<QImage> drawn = strips(doc, height);
    edit_layout::settle(&doc);
    doc.markContentsDirty(0, doc.characterCount());
    doc.documentLayout()->documentSize();
    const std::vector<std::string> again = lines(doc);
    const auto differ = std::mismatch(typed.begin(), typed.end(), again.begin(), again.end());
    EXPECT_TRUE(differ.first == typed.end() && differ.second == again.end())
        << "typed: " << (differ.first == typed.end() ? "(end)" : *differ.first)
        << "\nwhole pass: " << (differ.second == again.end() ? "(end)" : *differ.second);
    const std::vector<QImage> whole = strips(doc, height);
    ASSERT_EQ(drawn.size(), whole.size());
    for (size_t i = 0; i < drawn.size(); ++i)
        EXPECT_TRUE(drawn[i] == whole[i]) << "strip " << i;
}

// More letters put in place than there are in the short paragraphs below:
// all of them are still drawn.
TEST(InPlaceTest, ShortParagraphsBelowManyKeysAreDrawn)
{
    RichTextSurface surface;
    QTextDocument& doc = *surface.document();
    QTextCursor c(&doc);
    for (int i = 0; i < 400; ++i) {
        if (i)
            c.insertBlock();
        c.insertText(QStringLiteral("riga %1").arg(i));
    }
    EditorView view(surface);
    view.resize(900, 700);
    view.show();
    doc.documentLayout()->documentSize();
    QCoreApplication::processEvents();
    const edit_layout::Counts before = edit_layout::counts(&doc);
    // Words put in at once, then letters.
    surface.setSelStart(startOf(doc, 3, 4));
    surface.typeText(QStringLiteral("scritte in fila ").repeated(3));
    QCoreApplication::processEvents();
    type(surface, surface.SelStart(), QStringLiteral("e altre"));
    EXPECT_EQ(edit_layout::counts(&doc).whole, before.whole);
    expectAsAfterAWholePass(doc);
}

class InPlace : public ::testing::TestWithParam<bool> {};

TEST_P(InPlace, KeysLeaveTheLinesAndPicturesOfAWholePass)
{
    RichTextSurface surface;
    QTextDocument& doc = *surface.document();
    fill(doc);
    EditorView view(surface);
    view.resize(900, 700);
    if (GetParam()) {
        PageLayout page;
        page.left = page.right = 1134;
        page.top = page.bottom = 567;
        page.sheetHeight = 16839.9;
        page.textWidth = 11907 - page.left - page.right;
        view.setPageLayout(page);
        ASSERT_GE(view.sheetCount(), 4);
    }
    view.show();
    doc.documentLayout()->documentSize();
    QCoreApplication::processEvents();

    const edit_layout::Counts before = edit_layout::counts(&doc);
    // Letters at the start, middle and end of the document, in a centred
    // and a spaced paragraph, beside the table; enough in one paragraph to
    // push a word onto a new line; an Enter and deletions between them.
    type(surface, startOf(doc, 2, 3), QStringLiteral("abc "));
    type(surface, startOf(doc, 150, 0), QStringLiteral("inizio "));
    type(surface, startOf(doc, 80, 2), QStringLiteral("xy"));
    type(surface, startOf(doc, 82, 1), QStringLiteral("zz"));
    type(surface, startOf(doc, 59, 10), QStringLiteral("centrato "));
    type(surface, startOf(doc, 45, 5), QStringLiteral("spaziate "));
    type(surface, startOf(doc, 120, 0), QStringLiteral("\r"));
    type(surface, startOf(doc, 44, 8), QStringLiteral("una riga intera di parole che va a capo prima o poi "));
    type(surface, startOf(doc, 30, 4), QStringLiteral("ab\b\bcd"));
    type(surface, startOf(doc, 140, 12), QStringLiteral("\b").repeated(8));
    type(surface, startOf(doc, 100, 4), QStringLiteral("ultimo"));
    const edit_layout::Counts after = edit_layout::counts(&doc);
    EXPECT_GT(after.inPlace - before.inPlace, 60);
    EXPECT_GT(after.whole - before.whole, 2);
    // Lines that come and go below the table: in the page view the sheets
    // below move without Qt's pass.
    type(surface, startOf(doc, 95, 6), QStringLiteral("altre parole che vanno a capo ").repeated(4));
    // A tall picture, one character that moves what follows by its height.
    QImage tall(40, 160, QImage::Format_RGB32);
    tall.fill(Qt::darkRed);
    doc.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("mem://alto")), tall);
    QTextImageFormat picture;
    picture.setName(QStringLiteral("mem://alto"));
    picture.setWidth(40);
    picture.setHeight(160);
    QTextCursor(doc.findBlockByNumber(100)).insertImage(picture);
    QCoreApplication::processEvents();
    const edit_layout::Counts below = edit_layout::counts(&doc);
    EXPECT_EQ(below.whole == after.whole, GetParam()) << below.whole - after.whole;

    expectAsAfterAWholePass(doc);
}

INSTANTIATE_TEST_SUITE_P(NormalAndPageView, InPlace, ::testing::Values(false, true));

}  // namespace
}  // namespace tornelia
