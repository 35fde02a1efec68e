// Paging through a long document on the real window, in the normal and the
// page view, and where the view stands after a file is opened or the zoom
// changes: the first line is on screen, below the ruler.
#include "app/main_layout.h"
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QGraphicsTextItem>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace tornelia {
namespace {

class PageKeysTest : public testing::ShownWindowTest {
protected:
    EditorView* view() { return window.editor(); }

    // The lines of the text from top to bottom, 0 for the first.
    int caretLine()
    {
        const QTextCursor c = view()->textItem()->textCursor();
        return c.block().blockNumber();
    }

    // Where line n of the text stands in the view's viewport.
    QRect lineOnScreen(int n)
    {
        const QTextBlock block = testo().document()->findBlockByNumber(n);
        const QRectF inItem = block.layout()->boundingRect().translated(block.layout()->position());
        return view()->mapFromScene(view()->textItem()->mapRectToScene(inItem)).boundingRect();
    }

    // The whole height of the line is on screen, its start too.
    bool lineShown(int n)
    {
        const QRect line = lineOnScreen(n);
        const QRect screen = view()->viewport()->rect();
        return line.top() >= screen.top() && line.bottom() <= screen.bottom() && screen.contains(line.topLeft());
    }

    QString longText()
    {
        QStringList lines;
        for (int i = 0; i < 300; ++i)
            lines << QStringLiteral("Riga %1 del documento lungo").arg(i);
        return lines.join(QStringLiteral("\r\n"));
    }

    void settle()
    {
        for (int i = 0; i < 4; ++i)
            QApplication::processEvents();
    }

    void press(int key, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        testing::key(view(), key, mods);
        settle();
    }

    // Lines paged over by Page Down and back by Page Up, with the caret on
    // screen after each, and what Shift and Control do.
    void pagesOneScreenAtATime()
    {
        testo().setText(longText());
        testo().setSelStart(0);
        settle();
        const int perScreen = view()->viewport()->height() / lineOnScreen(0).height();
        ASSERT_GT(perScreen, 5);

        press(Qt::Key_PageDown);
        const int first = caretLine();
        EXPECT_GE(first, perScreen - 2);
        EXPECT_LE(first, perScreen + 2);
        EXPECT_TRUE(lineShown(first));
        EXPECT_EQ(testo().SelLength(), 0);
        press(Qt::Key_PageDown);
        EXPECT_NEAR(caretLine(), 2 * first, 2);
        EXPECT_TRUE(lineShown(caretLine()));

        // Shift keeps the anchor where it was and selects the screen between.
        const long anchor = testo().SelStart();
        press(Qt::Key_PageUp, Qt::ShiftModifier);
        EXPECT_EQ(testo().SelStart() + testo().SelLength(), anchor);
        EXPECT_GT(testo().SelLength(), 0);
        EXPECT_NEAR(caretLine(), first, 2);

        // Past the first screen: the first line, shown.
        press(Qt::Key_PageUp);
        press(Qt::Key_PageUp);
        EXPECT_EQ(caretLine(), 0);
        EXPECT_TRUE(lineShown(0));

        // Control with a key of code 18 and above stays swallowed.
        press(Qt::Key_PageDown, Qt::ControlModifier);
        EXPECT_EQ(caretLine(), 0);
        EXPECT_EQ(view()->verticalScrollBar()->value(), view()->verticalScrollBar()->minimum());
    }
};

}  // namespace

TEST_F(PageKeysTest, PageUpAndDownMoveByAScreenInBothViews)
{
    {
        SCOPED_TRACE("normal view");
        pagesOneScreenAtATime();
    }
    window.setViewKind(true);
    settle();
    ASSERT_TRUE(view()->pageView());
    {
        SCOPED_TRACE("page view");
        pagesOneScreenAtATime();
    }
}

TEST_F(PageKeysTest, FirstLineShowsAfterAnOpenAndAZoomInPageView)
{
    window.setViewKind(true);
    settle();
    const QString path = t.folder.filePath(QStringLiteral("lungo.txt"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(longText().toLatin1());
    file.close();

    // The view had been scrolled down in the document before.
    testo().setText(longText());
    testo().setSelStart(testo().length());
    settle();
    ASSERT_GT(view()->verticalScrollBar()->value(), 0);
    t.context->document().segnaSalvato();

    QStringList wrong;
    const auto check = [&](const QString& when) {
        settle();
        if (!lineShown(0))
            wrong << when + QStringLiteral(": first line at %1,%2 of a view %3 high")
                                .arg(lineOnScreen(0).top())
                                .arg(lineOnScreen(0).bottom())
                                .arg(view()->viewport()->height());
    };
    window.Aprii(path);
    check(QStringLiteral("open"));
    for (const char* level : {"200%", "50%", "250%", "100% - dimensioni reali      ."}) {
        window.zoom(QString::fromLatin1(level));
        check(QString::fromLatin1(level));
    }
    EXPECT_EQ(wrong, QStringList{});
}

}  // namespace tornelia
