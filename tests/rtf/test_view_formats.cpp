// The editor view shows what the engine writes. Set TORNELIA_SHOT to a file
// name to keep the picture of the sample paragraph.

#include "engine_support.h"

#include "controls/editor_view.h"
#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QGraphicsTextItem>
#include <QImage>
#include "controls/format_painter.h"
#include <QPaintEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>

using namespace tornelia;
using namespace tornelia::test;

namespace {

struct Sample {
    QString word;
    std::function<void(ClsExtendedRTF&, ClsRTFFontLooks&, RichTextSurface&)> apply;
};

// Every format on its own word, each put there by the engine.
std::vector<Sample> samples()
{
    return {
        {"dotted", [](auto& e, auto&, auto&) { e.setSelDot(true); }},
        {"dash", [](auto& e, auto&, auto&) { e.setSelDash(true); }},
        {"dashdot", [](auto& e, auto&, auto&) { e.setSelDashd(true); }},
        {"dashdotdot", [](auto& e, auto&, auto&) { e.setSelDashdd(true); }},
        {"wave", [](auto& e, auto&, auto&) { e.setSelWave(true); }},
        {"double", [](auto& e, auto&, auto&) { e.setSelUlDouble(true); }},
        {"thick", [](auto& e, auto&, auto&) { e.setSelThick(true); }},
        {"word only", [](auto& e, auto&, auto&) { e.setSelUlWord(true); }},
        {"hairline", [](auto& e, auto&, auto&) { e.setSelHair(true); }},
        {"HIDDEN", [](auto&, auto& l, auto&) { l.setSelVisible(true); }},
        {"highlight", [](auto&, auto& l, auto&) { l.RTFHighlightHard(0x00FFFF); }},
        {"raised", [](auto&, auto&, auto& s) { s.setSelCharOffset(100); }},
        {"lowered", [](auto&, auto&, auto& s) { s.setSelCharOffset(-100); }},
        {"caps", [](auto&, auto&, auto& s) { s.setSelCaps(true); }},
        {"rainbow", [](auto&, auto& l, auto&) {
             l.ApplyColours({0x0000FF, 0x0080FF, 0x00C0C0, 0x00A000, 0xC00000, 0x800080, 0x400040}, true, false);
         }},
    };
}

struct View : ::testing::Test {
    View()
    {
        looks.AssignControls(&surface, nullptr);
        extended.AssignControls(&surface, nullptr);
        surface.setDefaultFormat(QStringLiteral("DejaVu Sans"), 14);
        QString text;
        for (const Sample& s : samples())
            text += s.word + QStringLiteral(" ");
        surface.setText(text.trimmed());
        for (const Sample& s : samples()) {
            select(surface, surface.Text().indexOf(s.word), s.word.size());
            s.apply(extended, looks, surface);
        }
        select(surface, 0, 0);
        view.resize(900, 160);
        view.show();
        QApplication::processEvents();
    }
    QImage grab()
    {
        QApplication::processEvents();
        QImage shot = view.grab().toImage();
        if (const QByteArray path = qgetenv("TORNELIA_SHOT"); !path.isEmpty())
            shot.save(QString::fromLocal8Bit(path));
        return shot;
    }
    // The rectangle of a word on the screen, from the laid-out line.
    QRectF wordBox(const QString& word)
    {
        const int at = surface.document()->toPlainText().indexOf(word);
        const QTextBlock block = surface.document()->findBlock(at);
        const QTextLine line = block.layout()->lineForTextPosition(at - block.position());
        const QRectF box = surface.document()->documentLayout()->blockBoundingRect(block);
        const qreal x1 = line.cursorToX(at - block.position());
        const qreal x2 = line.cursorToX(at - block.position() + int(word.size()));
        return QRectF(box.left() + x1, box.top() + line.y(), x2 - x1, line.height());
    }
    // Rows below the word's base line that hold dark ink, as offsets from
    // the base line.
    std::vector<int> inkRows(const QImage& shot, const QString& word)
    {
        const QRectF box = wordBox(word);
        const QTextBlock block = surface.document()->findBlock(surface.document()->toPlainText().indexOf(word));
        const qreal base = surface.document()->documentLayout()->blockBoundingRect(block).top() +
                           block.layout()->lineAt(0).y() + block.layout()->lineAt(0).ascent();
        std::vector<int> rows;
        for (int dy = 1; dy < 9; ++dy) {
            int dark = 0;
            const int y = int(base) + dy;
            for (int x = int(box.left()) + 2; x < int(box.right()) - 2; ++x)
                dark += qGray(shot.pixel(x, y)) < 128;
            if (dark > box.width() * 0.6)
                rows.push_back(dy);
        }
        return rows;
    }

    test::RecordingMessages messages;
    RichTextSurface surface;
    ClsExtendedRTF extended{messages};
    ClsRTFFontLooks looks{messages};
    EditorView view{surface};
};

}  // namespace

TEST_F(View, EveryFormatTheEngineWritesIsShown)
{
    const QImage shot = grab();
    // Hidden text takes next to no room, and the document still holds it.
    EXPECT_LT(wordBox("HIDDEN").width(), 8);
    EXPECT_TRUE(surface.Text().contains(QLatin1String("HIDDEN")));
    // Double: two lines; thick: one line of several rows; hairline: one.
    const std::vector<int> doubled = inkRows(shot, "double");
    ASSERT_EQ(doubled.size(), 2u);
    EXPECT_GE(doubled[1] - doubled[0], 2);
    EXPECT_GE(inkRows(shot, "thick").size(), 2u);
    EXPECT_EQ(inkRows(shot, "hairline").size(), 1u);
    // Word-only leaves the blank between its words bare.
    const QRectF blank = wordBox(" only").adjusted(0, 0, -wordBox("only").width(), 0);
    const QRectF word = wordBox("word");
    bool blankInked = false;
    for (int y = int(word.top() + word.height() * 0.7); y < int(word.bottom()); ++y)
        for (int x = int(blank.left()); x < int(blank.right()); ++x)
            blankInked = blankInked || qGray(shot.pixel(x, y)) < 128;
    EXPECT_FALSE(blankInked);
    // Raised and lowered keep their size and move off the line.
    EXPECT_NEAR(wordBox("raised").width(), QFontMetricsF(QFont("DejaVu Sans", 14)).horizontalAdvance("raised"), 2);
    // The highlight's yellow stands behind its word.
    const QRectF lit = wordBox("highlight");
    EXPECT_EQ(shot.pixel(int(lit.left()) + 1, int(lit.top()) + 2), qRgb(255, 255, 0));
}

TEST_F(View, ShowingChangesNothingInTheDocument)
{
    const QString rtf = surface.TextRTF();
    int changes = 0;
    QObject::connect(&surface, &RichTextSurface::Change, [&] { ++changes; });
    auto* painter = view.findChild<FormatPainter*>();
    ASSERT_NE(painter, nullptr);
    painter->refresh();
    grab();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(surface.TextRTF(), rtf);
    // Typing raises one Change, as without the view, and what is typed into
    // a hidden word is hidden too.
    select(surface, surface.Text().indexOf("HIDDEN") + 3, 0);
    surface.typeText(QStringLiteral("x"));
    EXPECT_EQ(changes, 1);
    grab();
    EXPECT_LT(wordBox("HIDxDEN").width(), 9);
}

// Text typed before a hidden word moves its display format along with it,
// and the ranges others keep in the same layout (the spelling's marks) stay
// when the painter updates its own.
TEST_F(View, DisplayFormatsFollowTheTypingAndLeaveOthersRanges)
{
    select(surface, 0, 0);
    surface.typeText(QStringLiteral("yy "));
    grab();
    EXPECT_LT(wordBox("HIDDEN").width(), 8);

    const QTextBlock block = surface.document()->firstBlock();
    QTextCharFormat theirs;
    theirs.setProperty(QTextFormat::UserProperty + 900, true);
    theirs.setFontOverline(true);
    QList<QTextLayout::FormatRange> ranges = block.layout()->formats();
    ranges.append({0, 2, theirs});
    block.layout()->setFormats(ranges);
    select(surface, 1, 0);
    surface.typeText(QStringLiteral("z"));
    grab();
    EXPECT_LT(wordBox("HIDDEN").width(), 8);
    int kept = 0;
    for (const auto& r : surface.document()->firstBlock().layout()->formats())
        kept += r.format.hasProperty(QTextFormat::UserProperty + 900);
    EXPECT_EQ(kept, 1);
}

// A key repaints from its own paragraph down, never the part of the window
// above it, whichever paragraph of a long document it is typed into (the
// layout restarts at points down the document, and right after one of them
// it asked to repaint from the top of the document).
TEST(EditorRepaint, AKeyRepaintsNothingAboveItsParagraph)
{
    struct Paints : QObject {
        QRegion painted;
        bool eventFilter(QObject*, QEvent* e) override
        {
            if (e->type() == QEvent::Paint)
                painted += static_cast<QPaintEvent*>(e)->region();
            return false;
        }
    };
    RichTextSurface surface;
    QString text;
    for (int i = 0; i < 240; ++i)
        text += QStringLiteral("Paragrafo %1 di una lettera lunga, con parole e ancora parole da leggere.\r\n").arg(i);
    surface.setText(text);
    EditorView view(surface);
    view.resize(700, 500);
    view.show();
    surface.document()->documentLayout()->documentSize();
    QApplication::processEvents();
    Paints paints;
    view.viewport()->installEventFilter(&paints);

    std::vector<int> repaintedAbove;
    for (int n = 0; n + 1 < surface.document()->blockCount(); ++n) {
        const QTextBlock block = surface.document()->findBlockByNumber(n);
        QTextCursor at(block);
        at.setPosition(block.position() + 10);
        surface.adoptCursor(at);
        QApplication::processEvents();
        paints.painted = QRegion();
        surface.typeText(QStringLiteral("x"));
        QApplication::processEvents();
        const qreal top = surface.document()->documentLayout()->blockBoundingRect(block).top();
        const int topInView = view.mapFromScene(view.textItem()->mapToScene(QPointF(0, top))).y();
        if (!paints.painted.isEmpty() && paints.painted.boundingRect().top() < topInView - 2)
            repaintedAbove.push_back(n);
    }
    EXPECT_EQ(repaintedAbove, std::vector<int>{});
}
