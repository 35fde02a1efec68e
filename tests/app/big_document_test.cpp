// A large formatted RTF file opened in the real window: all of it arrives,
// the last paragraph included, and the window still answers the keys and the
// scroll bar afterwards.
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QGraphicsTextItem>
#include <QScrollBar>
#include <QTextBlock>

#include <array>
#include <string>
#include <vector>

namespace tornelia {
namespace {

using testing::typeKeys;

// About `bytes` of RTF: paragraphs of words under changing bold, italic,
// colour and size, with accented letters as \'hh, and a last paragraph that
// says which it is.
QByteArray formattedRtf(qsizetype bytes, const std::string& last)
{
    std::string out = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}{\\f1\\froman Times New Roman;}}\r\n"
                      "{\\colortbl ;\\red200\\green0\\blue0;\\red0\\green120\\blue0;}\r\n\\pard\\f0\\fs20 ";
    static const char* const kWords[] = {"casa", "citt\\'e0", "parola", "lunga", "perch\\'e9", "testo", "sole"};
    static const char* const kFormats[] = {"\\b ", "\\b0 ", "\\i ", "\\i0 ", "\\cf1 ", "\\cf2 ", "\\cf0 ", "\\fs28 ",
                                           "\\fs20 ", "\\f1 ", "\\f0 "};
    unsigned n = 0;
    while (qsizetype(out.size()) < bytes) {
        for (int w = 0; w < 60; ++w, ++n) {
            if (n % 7 == 3)
                out += kFormats[(n / 7) % std::size(kFormats)];
            out += kWords[(n * 5 + w) % std::size(kWords)];
            out += ' ';
        }
        out += "\\par\r\n";
        if (n % 11 == 0)
            out += n % 22 ? "\\pard\\qc " : "\\pard ";
    }
    out += "\\pard\\b0\\i0 " + last + "\\par\r\n}\r\n";
    return QByteArray(out.data(), qsizetype(out.size()));
}

class BigDocumentTest : public testing::ShownWindowTest {};

TEST_F(BigDocumentTest, ASixteenMegabyteFileOpensWholeAndTheWindowAnswers)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grande.rtf"));
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(formattedRtf(16 * 1024 * 1024, "Ultimo paragrafo del documento grande."));
    }
    t.context->document().Aprii(path);
    QApplication::processEvents();

    RichTextSurface& s = testo();
    EXPECT_EQ(s.FileName(), path);
    EXPECT_GT(s.length(), 10'000'000);
    // The file's last \par ends the text: no empty paragraph follows.
    EXPECT_EQ(s.document()->lastBlock().text(), QStringLiteral("Ultimo paragrafo del documento grande."));
    EXPECT_TRUE(s.Text().endsWith(QStringLiteral(" \r\nUltimo paragrafo del documento grande.")));

    // To the end with the scroll bar, then a word typed at the very end shows
    // in the document and the caret's line in the status bar.
    QScrollBar* bar = window.editor()->verticalScrollBar();
    bar->setValue(bar->maximum());
    QApplication::processEvents();
    EXPECT_GT(bar->value(), 0);
    s.setSelStart(s.length());
    typeKeys(window.editor(), "Fine");
    QApplication::processEvents();
    EXPECT_TRUE(s.Text().endsWith(QStringLiteral("grande.Fine")));
    EXPECT_EQ(window.editor()->textItem()->textCursor().position(), s.document()->characterCount() - 1);
    EXPECT_TRUE(window.isVisible());
}

// A document large enough to be laid out after it is read: those who follow
// the document's changes hear of the new text once, and the first key after
// it is a change of one character, not of the whole document again (which
// laid the whole document out anew and checked its spelling from the top).
TEST_F(BigDocumentTest, TheFirstKeyAfterALargeDocumentChangesOnlyItsCharacter)
{
    QString text;
    for (int i = 0; text.size() < 300000; ++i)
        text += QStringLiteral("Paragrafo %1 con parole da leggere e da correggere.\r\n").arg(i);
    text += QStringLiteral("fine");

    RichTextSurface& s = testo();
    std::vector<std::array<int, 3>> heard;
    QObject::connect(s.document(), &QTextDocument::contentsChange, &window,
                     [&](int from, int removed, int added) { heard.push_back({from, removed, added}); });
    const int before = s.document()->characterCount();
    s.setText(text);
    QApplication::processEvents();
    const int after = s.document()->characterCount();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0][0], 0);
    EXPECT_EQ(heard[0][2] - heard[0][1], after - before);

    heard.clear();
    s.setSelStart(150000);
    const int at = s.cursor().position();
    typeKeys(window.editor(), "x");
    QApplication::processEvents();
    EXPECT_EQ(heard, (std::vector<std::array<int, 3>>{{at, 0, 1}}));
}

}  // namespace
}  // namespace tornelia
